// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <string_view>

namespace orvane {

/// Writes milestones such as "first-picture" to a file, for whoever measures the program from
/// outside. Does nothing unless a file was named. Owned by the composition root; main thread;
/// failures to write are ignored.
class Timeline {
public:
    /// Empty for none.
    explicit Timeline(QString path);

    /// Appends a line of the milestone, the milliseconds of the system's monotonic clock, and the
    /// detail, if any, on one line.
    void mark(std::string_view milestone, const QString& detail = QString()) const;

private:
    QString m_path;
};

} // namespace orvane
