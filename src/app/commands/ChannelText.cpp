// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/commands/ChannelText.h"

#include "language/Translation.h"

#include "base/PlainText.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace orvane::ChannelText {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype maxTextLength = 200;

QString visible(const QString& text) {
    return oneLine(text, maxTextLength);
}

/// Printed in the last column, as the width of a name in a terminal is unknown.
QString names(const Channel& channel) {
    return channel.nameAr().isEmpty()
               ? visible(channel.nameEn())
               : visible(channel.nameEn()) + u" ("_s + visible(channel.nameAr()) + u')';
}

} // namespace

QString table(const QList<Channel>& channels) {
    qsizetype idWidth = 0;
    qsizetype categoryWidth = 0;
    for (const Channel& channel : channels) {
        idWidth = std::max(idWidth, visible(channel.id()).size());
        categoryWidth = std::max(categoryWidth, identifier(channel.category()).size());
    }
    QString text;
    for (const Channel& channel : channels)
        text += visible(channel.id()).leftJustified(idWidth) + u"  "_s +
                identifier(channel.category()).leftJustified(categoryWidth) + u"  "_s +
                names(channel) + u'\n';
    return text;
}

QByteArray json(const QList<Channel>& channels) {
    QJsonArray list;
    for (const Channel& channel : channels)
        list += QJsonObject{{u"id"_s, channel.id()},
                            {u"category"_s, identifier(channel.category())},
                            {u"name"_s, channel.nameEn()},
                            {u"arabicName"_s, channel.nameAr()},
                            {u"handle"_s, channel.handle()}};
    return QJsonDocument(list).toJson();
}

QString explain(const QString& text, const ChannelLookup::Ambiguous& ambiguous) {
    return translated("CommandLine",
                      "\"%1\" is the name of several channels; use one of these ids:")
               .arg(isolated(visible(text))) +
           u'\n' + table(ambiguous.candidates);
}

QString explain(const QString& text, const ChannelLookup::Unknown& unknown) {
    const QString problem =
        unknown.nearest.isEmpty()
            ? translated("CommandLine",
                         "there is no channel \"%1\"; orvane --list prints all channels")
            : translated("CommandLine", "there is no channel \"%1\"; similar ones:");
    return problem.arg(isolated(visible(text))) + u'\n' + table(unknown.nearest);
}

} // namespace orvane::ChannelText
