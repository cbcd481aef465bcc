// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Timeline.h"

#include <QFile>

#include <chrono>

namespace orvane {

Timeline::Timeline(QString path) : m_path(std::move(path)) {}

void Timeline::mark(std::string_view milestone, const QString& detail) const {
    if (m_path.isEmpty())
        return;
    QFile file(m_path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append))
        return;
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    QByteArray line(milestone.data(), static_cast<qsizetype>(milestone.size()));
    line += ' ';
    line += QByteArray::number(
        qint64{std::chrono::duration_cast<std::chrono::milliseconds>(now).count()});
    if (!detail.isEmpty())
        line += ' ' + detail.simplified().toUtf8();
    line += '\n';
    file.write(line);
}

} // namespace orvane
