// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/commands/Verb.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <expected>
#include <variant>

namespace orvane {

/// What the words of a command line ask for. Values and pure functions; any thread. Nothing is
/// looked up: the channels are as they were typed.
namespace CommandLine {

struct ShowHelp {};
struct ShowVersion {};
struct ListChannels {
    enum class Format { table, json };
    Format format = Format::table;
};
struct Run {
    /// In the order in which they were typed; none for a plain start.
    QList<Verb::Value> verbs;
};
using Command = std::variant<Run, ShowHelp, ShowVersion, ListChannels>;

struct UsageError {
    /// For the person, without the program's name.
    QString message;
};

/// `arguments` are the words after the program's name.
[[nodiscard]] std::expected<Command, UsageError> parse(const QStringList& arguments);

/// Every option, on one screen.
[[nodiscard]] QString help();

} // namespace CommandLine

} // namespace orvane
