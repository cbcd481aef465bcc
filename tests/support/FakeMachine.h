// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/system/HostFileSystem.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace orvane::test {

/// A machine laid out in a temporary folder, with the user's home at "/home". Its programs are
/// shell scripts that record how they were called; "$root" is the machine's root in them.
class FakeMachine {
public:
    [[nodiscard]] HostFileSystem host() const;
    /// Returns the real path of the machine's `path`.
    [[nodiscard]] QString real(const QString& path) const;

    void install(const QString& path, const QByteArray& script = {}) const;
    void remove(const QString& path) const;

    /// Returns, for each call so far, the program's path on the machine and each argument in
    /// brackets.
    [[nodiscard]] QStringList calls() const;
    void forgetCalls() const { remove(QStringLiteral("/log")); }

private:
    QTemporaryDir m_folder;
};

} // namespace orvane::test
