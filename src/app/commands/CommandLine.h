// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/commands/Verb.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <expected>
#include <variant>

namespace orvane {

/// Parses a command line. Values and pure functions; any thread; no application object is needed.
/// Channels are not looked up: their names are as the user typed them. QCommandLineParser does the
/// parsing but not the help, which it cannot print before there is an application object.
namespace CommandLine {

struct ShowHelp {};
struct ShowVersion {};
struct ListChannels {
    enum class Format { table, json };
    Format format = Format::table;
};
struct Run {
    /// In the order in which they were typed; empty for a plain start.
    QList<Verb::Value> verbs;
    bool isVerbose = false;
};
using Command = std::variant<Run, ShowHelp, ShowVersion, ListChannels>;

struct UsageError {
    /// For the user, without the program's name.
    QString message;
};

/// `arguments` are those after the program's name.
[[nodiscard]] std::expected<Command, UsageError> parse(const QStringList& arguments);

/// Returns the help: all options, in at most 24 lines of 80 characters.
[[nodiscard]] QString help();

} // namespace CommandLine

} // namespace orvane
