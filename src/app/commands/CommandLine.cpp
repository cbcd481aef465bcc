// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/commands/CommandLine.h"

#include "model/EditDistance.h"

#include <QCommandLineParser>
#include <QHash>

#include <algorithm>

namespace orvane::CommandLine {

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView list{"list"};
constexpr QLatin1StringView json{"json"};
constexpr QLatin1StringView verbose{"verbose"};
constexpr QLatin1StringView version{"version"};
constexpr QLatin1StringView sessionOption{"session"};
constexpr QLatin1StringView helpOption{"help"};

struct Option {
    QString name;
    /// The placeholder of its value in the help; empty if it has none.
    QString value;
    QString explanation;
};

const QList<Option>& options() {
    static const QList<Option> table{
        {u"play"_s, u"ID|NAME"_s, u"play this channel, by its id or one of its names"_s},
        {u"next"_s, {}, u"play the next enabled channel"_s},
        {u"previous"_s, {}, u"play the previous enabled channel"_s},
        {u"mute"_s, {}, u"mute or unmute"_s},
        {u"toggle-ghost"_s, {}, u"turn ghost mode on or off"_s},
        {u"settings"_s, {}, u"open the settings"_s},
        {u"add"_s, u"TEXT"_s, u"look up a link, handle or name to add; \"\" to be asked"_s},
        {u"quit"_s, {}, u"quit the running Orvane; if there is none, do nothing"_s},
        {list, {}, u"print id, category and name of every channel"_s},
        {json, {}, u"with --list: as JSON"_s},
        {verbose, {}, u"log to the standard error, for the copy that this starts"_s},
        {version, {}, u"print the version of Orvane and of what it uses"_s},
        {helpOption, {}, u"print this help"_s},
    };
    return table;
}

std::unexpected<UsageError> usageError(const QString& message) {
    return std::unexpected(UsageError{message});
}

QString unexpectedArgument(const QString& argument) {
    return u"unexpected argument \"%1\""_s.arg(argument);
}

QString unknownOption(const QString& name, const QStringList& arguments) {
    QString message =
        unexpectedArgument((arguments.contains(u'-' + name) ? u"-"_s : u"--"_s) + name);
    for (const Option& option : options()) {
        if (isLikelyTypo(name, option.name))
            return message + u"; did you mean --"_s + option.name + u'?';
    }
    return message;
}

QString missingValue(const QString& name) {
    return u"missing value after \"--%1\""_s.arg(name);
}

/// Returns the parser's message in the style of the others: no capital, no full stop.
QString parserMessage(const QCommandLineParser& parser) {
    QString message = parser.errorText().replace(u'\'', u'"');
    if (message.endsWith(u'.'))
        message.chop(1);
    return message.isEmpty() ? message : message.at(0).toLower() + message.sliced(1);
}

/// An option with its value.
struct Word {
    QString name;
    QString value;
};

void addOptions(QCommandLineParser& parser) {
    // A session manager restores the program with "-session ID", which QApplication reads later.
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.addOption({sessionOption, {}, sessionOption});
    for (const Option& option : options()) {
        QStringList names{option.name};
        if (option.name == helpOption)
            names += u"h"_s;
        parser.addOption({names, option.explanation, option.value});
    }
}

/// Returns whether `value` is no value for `option`. `arguments` are all arguments of the program.
bool lacksValue(const Option& option, const QString& value, const QStringList& arguments) {
    // The parser takes the next option for a value; only "--add=--x" means a leading "--".
    const bool isOption = value.startsWith(u"--") && arguments.contains(value);
    // The text to add can still be typed into the page that opens.
    const bool isMissing = value.trimmed().isEmpty() && option.name != Verb::Add::name;
    return isOption || isMissing;
}

/// Returns the options in the order in which they were typed.
std::expected<QList<Word>, UsageError> optionsOf(const QStringList& arguments) {
    QCommandLineParser parser;
    addOptions(parser);
    const bool isParsed = parser.parse(QStringList{u"orvane"_s} + arguments);
    if (!parser.unknownOptionNames().isEmpty())
        return usageError(unknownOption(parser.unknownOptionNames().first(), arguments));
    if (!isParsed)
        return usageError(parserMessage(parser));
    if (!parser.positionalArguments().isEmpty())
        return usageError(unexpectedArgument(parser.positionalArguments().first()));
    QHash<QString, QStringList> values;
    QList<Word> words;
    for (const QString& typed : parser.optionNames()) {
        const QString name = typed == u"h" ? QString(helpOption) : typed;
        const auto option = std::ranges::find(options(), name, &Option::name);
        if (option == options().end())
            continue;
        Word word{name, {}};
        if (!option->value.isEmpty()) {
            if (!values.contains(name))
                values[name] = parser.values(name);
            word.value = values[name].takeFirst();
            if (lacksValue(*option, word.value, arguments))
                return usageError(missingValue(name));
        }
        words += word;
    }
    return words;
}

std::expected<Command, UsageError> commandOf(QList<Word> words) {
    const bool isVerbose = words.removeIf([](const Word& w) { return w.name == verbose; }) > 0;
    const auto has = [&](QLatin1StringView name) {
        return std::ranges::find(words, name, &Word::name) != words.end();
    };
    if (has(helpOption))
        return ShowHelp{};
    if (has(version))
        return ShowVersion{};
    if (has(list) || has(json)) {
        if (!has(list))
            return usageError(u"--json needs --list"_s);
        if (!std::ranges::all_of(words,
                                 [](const Word& w) { return w.name == list || w.name == json; }))
            return usageError(u"--list can only be combined with --json"_s);
        return ListChannels{has(json) ? ListChannels::Format::json : ListChannels::Format::table};
    }
    if (has(Verb::Quit::name) && words.size() > 1)
        return usageError(u"--quit cannot be combined with other options"_s);
    Run run{.isVerbose = isVerbose};
    for (const Word& word : words) {
        std::optional<Verb::Value> verb = Verb::named(word.name);
        if (!verb)
            continue;
        if (QString* const text = Verb::textOf(*verb))
            *text = word.value;
        run.verbs += *verb;
    }
    return run;
}

} // namespace

std::expected<Command, UsageError> parse(const QStringList& arguments) {
    const auto words = optionsOf(arguments);
    return words ? commandOf(*words) : std::unexpected(words.error());
}

QString help() {
    constexpr int column = 22;
    QString text =
        u"Usage: orvane [OPTIONS]\n\n"
        "Plays live channels in a small window. While it runs, starting it again shows\n"
        "that window, and the running copy carries out the options in their order.\n\n"_s;
    for (const Option& option : options()) {
        const QString usage =
            u"  --"_s + option.name + (option.value.isEmpty() ? u""_s : u' ' + option.value);
        text += usage.leftJustified(column) + u' ' + option.explanation + u'\n';
    }
    return text + u"\nExit codes: 0 done, 1 failed, 2 not understood or no such channel.\n"_s;
}

} // namespace orvane::CommandLine
