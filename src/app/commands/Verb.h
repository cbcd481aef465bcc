// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QLatin1StringView>
#include <QList>
#include <QString>

#include <optional>
#include <variant>

namespace orvane {

/// The commands that a command line can give to the running program. Values; between processes they
/// are sent as one line of JSON with a version, in which a verb is named like its option. Any
/// thread.
namespace Verb {

/// The command of a start without options.
struct Show {
    static constexpr QLatin1StringView name{"show"};
};
struct Play {
    static constexpr QLatin1StringView name{"play"};
    /// In a message the id; on a command line any of the channel's names.
    QString text;
};
struct Next {
    static constexpr QLatin1StringView name{"next"};
};
struct Previous {
    static constexpr QLatin1StringView name{"previous"};
};
struct Back {
    static constexpr QLatin1StringView name{"back"};
    /// Seconds; empty for the usual step.
    QString text;
};
struct Live {
    static constexpr QLatin1StringView name{"live"};
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
    /// The text to look up: a link, a handle or a name.
    QString text;
};
struct Quit {
    static constexpr QLatin1StringView name{"quit"};
};

using Value =
    std::variant<Show, Play, Next, Previous, Back, Live, ToggleGhost, Mute, Settings, Add, Quit>;

template <class V>
inline constexpr bool hasText = requires(V verb) { verb.text; };

/// Returns the verb with this name, with an empty text if it has one; nullopt if there is none.
[[nodiscard]] std::optional<Value> named(const QString& name);

/// Returns the verb's text; null for a verb without one.
[[nodiscard]] QString* textOf(Value& verb);

/// Returns one line without a line break.
[[nodiscard]] QByteArray encode(const QList<Value>& verbs);

/// Returns nullopt unless `message` has this version and all its verbs are known.
[[nodiscard]] std::optional<QList<Value>> decode(const QByteArray& message);

} // namespace Verb

} // namespace orvane
