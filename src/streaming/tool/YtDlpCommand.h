// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

namespace orvane {

/// How yt-dlp is started: as an executable of its own, or as a module of the system's Python. A
/// value; any thread.
struct YtDlpCommand {
    enum class Kind { executable, pythonModule };

    Kind kind = Kind::executable;
    /// Absolute path of the executable or of Python.
    QString program;

    /// Returns the whole argument list for yt-dlp's own `arguments`.
    [[nodiscard]] QStringList argumentsFor(const QStringList& arguments) const {
        using namespace Qt::StringLiterals;
        return kind == Kind::pythonModule ? QStringList{u"-m"_s, u"yt_dlp"_s} + arguments
                                          : arguments;
    }

    friend bool operator==(const YtDlpCommand&, const YtDlpCommand&) = default;
};

} // namespace orvane
