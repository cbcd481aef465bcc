// SPDX-License-Identifier: GPL-3.0-or-later
#include "streaming/ladder/LadderMemory.h"

#include "base/ReplaceFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

/// Far more than an entry takes.
constexpr qint64 sizeLimit = 64 * 1024;

std::optional<Rung> rungFrom(int number) {
    for (const Rung rung : allCases<Rung>) {
        if (static_cast<int>(rung) == number)
            return rung;
    }
    return std::nullopt;
}

std::optional<LadderMemory::Entry> readFile(const QString& path) {
    QFile file(path);
    if (path.isEmpty() || !file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return LadderMemory::fromJson(file.read(sizeLimit));
}

} // namespace

LadderMemory::LadderMemory(QString path) : m_path(std::move(path)) {}

const std::optional<LadderMemory::Entry>& LadderMemory::entry() {
    if (!m_isRead) {
        m_entry = readFile(m_path);
        m_isRead = true;
    }
    return m_entry;
}

void LadderMemory::set(std::optional<Entry> entry) {
    if (this->entry() == entry)
        return;
    m_entry = std::move(entry);
    if (m_path.isEmpty())
        return;
    if (m_entry) {
        m_writer.start([path = m_path, json = toJson(*m_entry)] {
            QDir().mkpath(QFileInfo(path).absolutePath());
            // A failure costs one slow start at the next run.
            static_cast<void>(replaceFile(path, json));
        });
    } else {
        m_writer.start([path = m_path] { QFile::remove(path); });
    }
}

QByteArray LadderMemory::toJson(const Entry& entry) {
    return QJsonDocument(
               QJsonObject{
                   {u"rung"_s, static_cast<int>(entry.rung)},
                   {u"program"_s, entry.command.program},
                   {u"isPythonModule"_s, entry.command.kind == YtDlpCommand::Kind::pythonModule},
                   {u"version"_s, entry.version},
               })
        .toJson();
}

std::optional<LadderMemory::Entry> LadderMemory::fromJson(const QByteArray& json) {
    const QJsonObject object = QJsonDocument::fromJson(json).object();
    const std::optional<Rung> rung = rungFrom(object.value("rung"_L1).toInt(-1));
    const QString program = object.value("program"_L1).toString();
    const QString version = object.value("version"_L1).toString();
    if (!rung || *rung == Rung::usual || !program.startsWith(u'/') || version.isEmpty())
        return std::nullopt;
    const auto kind = object.value("isPythonModule"_L1).toBool() ? YtDlpCommand::Kind::pythonModule
                                                                 : YtDlpCommand::Kind::executable;
    return Entry{.rung = *rung, .command = {kind, program}, .version = version};
}

} // namespace orvane
