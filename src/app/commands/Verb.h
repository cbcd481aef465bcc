// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QLatin1StringView>
#include <QList>
#include <QString>

#include <optional>
#include <variant>

namespace orvane {

/// What can be asked of the running program from a command line. Values that travel between
/// processes as one line of JSON, with a version, in which each verb has the name that it has as an
/// option. Any thread.
namespace Verb {

/// What starting the program again means.
struct Show {
    static constexpr QLatin1StringView name{"show"};
};
struct Play {
    static constexpr QLatin1StringView name{"play"};
    /// In a message the id; on a command line whatever a person calls the channel.
    QString text;
};
struct Next {
    static constexpr QLatin1StringView name{"next"};
};
struct Previous {
    static constexpr QLatin1StringView name{"previous"};
};
struct ToggleGhost {
    static constexpr QLatin1StringView name{"toggle-ghost"};
};
struct Mute {
    static constexpr QLatin1StringView name{"mute"};
};
struct Settings {
    static constexpr QLatin1StringView name{"settings"};
};
struct Add {
    static constexpr QLatin1StringView name{"add"};
    /// What the person would type into the field for a new channel.
    QString text;
};
struct Quit {
    static constexpr QLatin1StringView name{"quit"};
};

using Value = std::variant<Show, Play, Next, Previous, ToggleGhost, Mute, Settings, Add, Quit>;

template <class V>
inline constexpr bool hasText = requires(V verb) { verb.text; };

/// The verb of this name, with an empty text where it has one.
[[nodiscard]] std::optional<Value> named(const QString& name);

/// Where the verb's text is; null for a verb without one.
[[nodiscard]] QString* textOf(Value& verb);

/// One line, without its end.
[[nodiscard]] QByteArray encode(const QList<Value>& verbs);

/// Nothing unless `message` is of this version and every verb in it is known.
[[nodiscard]] std::optional<QList<Value>> decode(const QByteArray& message);

} // namespace Verb

} // namespace orvane
