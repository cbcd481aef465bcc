// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/system/HostFileSystem.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace orvane::test {

/// A machine laid out in a temporary folder, with its home at "/home". Programs put there are shell
/// scripts that record how they were called; "$root" is the machine's root in them.
class FakeMachine {
public:
    [[nodiscard]] HostFileSystem host() const;
    /// Where the machine's `path` really is.
    [[nodiscard]] QString real(const QString& path) const;

    void install(const QString& path, const QByteArray& script = {}) const;
    void remove(const QString& path) const;

    /// For each call so far, the program's path on the machine and each argument in brackets.
    [[nodiscard]] QStringList calls() const;

private:
    QTemporaryDir m_folder;
};

} // namespace orvane::test
