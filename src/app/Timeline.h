// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <string_view>

namespace orvane {

/// Writes milestones such as "window-shown" to a file, for tests and measurements of the whole
/// program. Owned by the composition root; main thread. Write errors are ignored.
class Timeline {
public:
    /// With an empty path nothing is written.
    explicit Timeline(QString path);

    /// Appends a line: the milestone, the monotonic clock in milliseconds, and `detail` if not
    /// empty.
    void mark(std::string_view milestone, const QString& detail = QString()) const;

private:
    QString m_path;
};

} // namespace orvane
