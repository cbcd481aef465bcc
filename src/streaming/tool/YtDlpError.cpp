// SPDX-License-Identifier: GPL-3.0-or-later
#include "streaming/tool/YtDlpError.h"

namespace orvane {

using namespace Qt::StringLiterals;

QString errorDescription(YtDlpError error) {
    if (error == YtDlpError::noPython)
        return u"Python 3 is required. Please install Xcode Command Line Tools."_s;
    if (error == YtDlpError::noReleaseFile)
        return u"Could not install yt-dlp: it has no file for this computer's processor. Please "
               "install yt-dlp, or Python 3.10 or later, from your distribution."_s;
    return u"Could not install yt-dlp. Please install manually: brew install yt-dlp"_s;
}

} // namespace orvane
