// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/Autostart.h"

#include "base/ReplaceFile.h"

#include <QDir>
#include <QFile>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

bool isTrue(QStringView value) {
    return value.trimmed() == u"true";
}

} // namespace

QString quotedForExec(const QString& argument) {
    QString text;
    for (const QChar c : argument) {
        // Escaped twice: for the quotes, and for the string type of desktop entries.
        if (c == u'\\')
            text += u"\\\\\\\\"_s;
        else if (c == u'"' || c == u'`' || c == u'$')
            text += u"\\\\"_s + c;
        else if (c == u'%')
            text += u"%%"_s;
        else
            text += c;
    }
    return u'"' + text + u'"';
}

Autostart::Autostart(Entry entry) : m_entry(std::move(entry)) {}

QString Autostart::path() const {
    return m_entry.folder + u'/' + m_entry.identifier + u".desktop"_s;
}

bool Autostart::isEnabled() const {
    QFile file(path());
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return false;
    // Desktops disable an entry with either of these keys instead of removing it.
    for (const QString& line : QString::fromUtf8(file.readAll()).split(u'\n')) {
        const qsizetype equals = line.indexOf(u'=');
        const QString key = line.first(qMax(equals, 0)).trimmed();
        const QString value = line.sliced(equals + 1);
        if ((key == u"Hidden" && isTrue(value)) ||
            (key == u"X-GNOME-Autostart-enabled" && !isTrue(value)))
            return false;
    }
    return true;
}

bool Autostart::setEnabled(bool isEnabled) {
    if (!isEnabled)
        return !QFile::exists(path()) || QFile::remove(path());
    const QString text = u"[Desktop Entry]\nType=Application\nName=%1\nIcon=%2\nExec=%3\n"
                         "X-GNOME-Autostart-enabled=true\n"_s.arg(
                             m_entry.name, m_entry.identifier, quotedForExec(m_entry.executable));
    return QDir().mkpath(m_entry.folder) && replaceFile(path(), text.toUtf8());
}

} // namespace orvane
