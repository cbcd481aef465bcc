// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/FakeMachine.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace orvane::test {

using namespace Qt::StringLiterals;

HostFileSystem FakeMachine::host() const {
    return {m_folder.path(), real(u"/home"_s)};
}

QString FakeMachine::real(const QString& path) const {
    return m_folder.path() + path;
}

void FakeMachine::install(const QString& path, const QByteArray& script) const {
    QDir().mkpath(QFileInfo(real(path)).path());
    QFile out(real(path));
    if (!out.open(QIODevice::WriteOnly))
        qFatal("cannot write a program of the fake machine");
    out.write("#!/bin/sh\nroot='" + m_folder.path().toUtf8() + "'\n");
    // In one write, as programs may run at the same time.
    out.write(R"(call="${0#"$root"}"; for a; do call="$call [$a]"; done)"
              "\n"
              R"(printf '%s\n' "$call" >> "$root/log")"
              "\n");
    out.write(script);
    out.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

void FakeMachine::remove(const QString& path) const {
    QFile::remove(real(path));
}

QStringList FakeMachine::calls() const {
    QFile file(real(u"/log"_s));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
}

} // namespace orvane::test
