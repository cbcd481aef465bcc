// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/commands/Verb.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <utility>

namespace orvane::Verb {

using namespace Qt::StringLiterals;

namespace {

constexpr int version = 1;

constexpr QLatin1StringView versionKey{"version"};
constexpr QLatin1StringView verbsKey{"verbs"};
constexpr QLatin1StringView nameKey{"name"};
constexpr QLatin1StringView textKey{"text"};

template <std::size_t... Index>
std::optional<Value> namedAmong(const QString& name, std::index_sequence<Index...>) {
    std::optional<Value> found;
    const auto consider = [&]<class V>(V verb) {
        if (name == V::name)
            found = std::move(verb);
    };
    (consider(std::variant_alternative_t<Index, Value>{}), ...);
    return found;
}

} // namespace

std::optional<Value> named(const QString& name) {
    return namedAmong(name, std::make_index_sequence<std::variant_size_v<Value>>());
}

QString* textOf(Value& verb) {
    return std::visit(
        []<class V>(V& v) -> QString* {
            if constexpr (hasText<V>)
                return &v.text;
            else
                return nullptr;
        },
        verb);
}

QByteArray encode(const QList<Value>& verbs) {
    QJsonArray list;
    for (Value verb : verbs) {
        QJsonObject entry;
        entry[nameKey] = std::visit([](const auto& v) { return QString(v.name); }, verb);
        if (const QString* text = textOf(verb))
            entry[textKey] = *text;
        list += entry;
    }
    const QJsonObject message{{versionKey, version}, {verbsKey, list}};
    return QJsonDocument(message).toJson(QJsonDocument::Compact);
}

std::optional<QList<Value>> decode(const QByteArray& message) {
    const QJsonObject object = QJsonDocument::fromJson(message).object();
    if (object[versionKey] != version || !object[verbsKey].isArray())
        return std::nullopt;
    QList<Value> verbs;
    for (const QJsonValue& entry : object[verbsKey].toArray()) {
        std::optional<Value> verb = named(entry[nameKey].toString());
        QString* const text = verb ? textOf(*verb) : nullptr;
        if (!verb || (text != nullptr && !entry[textKey].isString()))
            return std::nullopt;
        if (text != nullptr)
            *text = entry[textKey].toString();
        verbs += *verb;
    }
    return verbs;
}

} // namespace orvane::Verb
