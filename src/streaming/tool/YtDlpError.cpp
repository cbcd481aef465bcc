// SPDX-License-Identifier: GPL-3.0-or-later
#include "streaming/tool/YtDlpError.h"

namespace orvane {

using namespace Qt::StringLiterals;

QString errorDescription(YtDlpError error) {
    if (error == YtDlpError::noPython)
        return u"Python 3 is required. Please install Xcode Command Line Tools."_s;
    return u"Could not install yt-dlp. Please install manually: brew install yt-dlp"_s;
}

} // namespace orvane
