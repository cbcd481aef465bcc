// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace orvane {

/// The desktop entry that starts the program at login. The file itself is the setting, because
/// desktops can remove or disable it too. A value; main thread, where it reads and writes a small
/// file synchronously.
class Autostart {
public:
    /// `folder` is the user's autostart folder, `executable` an absolute path, `name` the name that
    /// is shown, and `identifier` the base name of the desktop entry.
    struct Entry {
        QString folder;
        QString identifier;
        QString name;
        QString executable;
    };

    explicit Autostart(Entry entry);

    [[nodiscard]] bool isEnabled() const;

    /// Returns false when the file cannot be written or removed; it is then unchanged.
    [[nodiscard]] bool setEnabled(bool isEnabled);

private:
    [[nodiscard]] QString path() const;

    Entry m_entry;
};

/// Returns `argument` quoted for the Exec key of a desktop entry.
[[nodiscard]] QString quotedForExec(const QString& argument);

} // namespace orvane
