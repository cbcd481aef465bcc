// SPDX-License-Identifier: GPL-3.0-or-later
#include "streaming/StreamError.h"

#include "streaming/ladder/StreamFailure.h"

namespace orvane {

QString errorDescription(const StreamError::Value& error) {
    if (const auto* failed = std::get_if<StreamError::ResolveFailed>(&error))
        return QLatin1StringView(FailurePrefix::notResolved) + failed->reason;
    return QString::fromLatin1(QT_TRANSLATE_NOOP("Failure", "Stream resolver returned no output"));
}

} // namespace orvane
