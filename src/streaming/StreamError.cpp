// SPDX-License-Identifier: GPL-3.0-or-later
#include "streaming/StreamError.h"

namespace orvane {

using namespace Qt::StringLiterals;

QString errorDescription(const StreamError::Value& error) {
    if (const auto* failed = std::get_if<StreamError::ResolveFailed>(&error))
        return u"Stream resolve failed: "_s + failed->reason;
    return u"Stream resolver returned no output"_s;
}

} // namespace orvane
