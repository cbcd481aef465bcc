// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace orvane {

/// The desktop entry by which a session starts the program at login. The file itself is the
/// setting: desktops' own settings remove it or switch it off, too. A value; main thread, as it
/// reads and writes a small file at once.
class Autostart {
public:
    /// `folder` is the autostart folder of the person's configuration. `executable` is what is
    /// started, with its whole path; `name` is the program's name for people and `identifier` that
    /// of its desktop entry.
    struct Entry {
        QString folder;
        QString identifier;
        QString name;
        QString executable;
    };

    explicit Autostart(Entry entry);

    [[nodiscard]] bool isEnabled() const;

    /// False when the file cannot be written or removed; it is then what it was.
    [[nodiscard]] bool setEnabled(bool isEnabled);

private:
    [[nodiscard]] QString path() const;

    Entry m_entry;
};

/// `argument` as it stands in the Exec key of a desktop entry.
[[nodiscard]] QString quotedForExec(const QString& argument);

} // namespace orvane
