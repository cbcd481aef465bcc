// SPDX-License-Identifier: GPL-3.0-or-later
#include "streaming/tool/BrokenTool.h"

#include <QFileInfo>

#include <algorithm>
#include <array>

namespace orvane {

namespace {

/// The statuses with which a shell reports a program that it cannot run.
constexpr std::array shellFailures{126, 127};

/// What Python, the loader or a shell prints when the program does not get as far as its options.
constexpr std::array signs{"Traceback (most recent call last)", "No module named",
                           "Exec format error", "error while loading shared libraries",
                           "Error loading Python lib"};

} // namespace

BrokenTool BrokenTool::at(const QString& path) {
    return {path, QFileInfo(path).metadataChangeTime()};
}

bool seemsNotToRun(const ProcessOutcome& outcome) {
    if (!outcome || outcome->end == ProcessResult::End::killed ||
        std::ranges::find(shellFailures, outcome->exitCode) != shellFailures.end())
        return true;
    const QByteArray& printed = outcome->standardError.bytes;
    return !outcome->succeeded() &&
           std::ranges::any_of(signs, [&](const char* sign) { return printed.contains(sign); });
}

} // namespace orvane
