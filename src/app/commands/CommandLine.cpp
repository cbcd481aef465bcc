// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/commands/CommandLine.h"

#include "language/Translation.h"

#include "model/EditDistance.h"

#include <QCommandLineParser>
#include <QHash>
#include <QRegularExpression>

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
    const char* explanation;
};

const QList<Option>& options() {
    static const QList<Option> table{
        {u"play"_s, u"ID|NAME"_s,
         QT_TRANSLATE_NOOP("CommandLine", "play this channel, by its id or one of its names")},
        {u"next"_s, {}, QT_TRANSLATE_NOOP("CommandLine", "play the next enabled channel")},
        {u"previous"_s, {}, QT_TRANSLATE_NOOP("CommandLine", "play the previous enabled channel")},
        {u"back"_s, u"[SECONDS]"_s,
         QT_TRANSLATE_NOOP("CommandLine", "go back in the stream; 10 seconds if none are given")},
        {u"live"_s, {}, QT_TRANSLATE_NOOP("CommandLine", "go to what is live now")},
        {u"mute"_s, {}, QT_TRANSLATE_NOOP("CommandLine", "mute or unmute")},
        {u"toggle-ghost"_s, {}, QT_TRANSLATE_NOOP("CommandLine", "turn ghost mode on or off")},
        {u"settings"_s, {}, QT_TRANSLATE_NOOP("CommandLine", "open the settings")},
        {u"add"_s, u"TEXT"_s,
         QT_TRANSLATE_NOOP("CommandLine",
                           "look up a link, handle or name to add; \"\" to be asked")},
        {u"quit"_s,
         {},
         QT_TRANSLATE_NOOP("CommandLine", "quit the running Orvane; if there is none, do nothing")},
        {list,
         {},
         QT_TRANSLATE_NOOP("CommandLine", "print id, category and name of every channel")},
        {json, {}, QT_TRANSLATE_NOOP("CommandLine", "with --list: as JSON")},
        {verbose,
         {},
         QT_TRANSLATE_NOOP("CommandLine",
                           "log to the standard error, for the copy that this starts")},
        {version,
         {},
         QT_TRANSLATE_NOOP("CommandLine", "print the version of Orvane and of what it uses")},
        {helpOption, {}, QT_TRANSLATE_NOOP("CommandLine", "print this help")},
    };
    return table;
}

std::unexpected<UsageError> usageError(const QString& message) {
    return std::unexpected(UsageError{message});
}

QString unexpectedArgument(const QString& argument) {
    return translated("CommandLine", "unexpected argument \"%1\"").arg(isolated(argument));
}

QString unknownOption(const QString& name, const QStringList& arguments) {
    QString message =
        unexpectedArgument((arguments.contains(u'-' + name) ? u"-"_s : u"--"_s) + name);
    for (const Option& option : options()) {
        if (isLikelyTypo(name, option.name))
            return translated("CommandLine", "%1; did you mean %2?")
                .arg(message, leftToRight(u"--"_s + option.name));
    }
    return message;
}

/// `typed` is the option with its dashes.
QString missingValue(const QString& typed) {
    return translated("CommandLine", "missing value after \"%1\"").arg(leftToRight(typed));
}

/// Returns the message for the option that the parser names between quotes.
QString parserMessage(const QCommandLineParser& parser) {
    const QString typed = parser.errorText().section(u'\'', 1, 1);
    const bool takesNone = std::ranges::any_of(options(), [&](const Option& option) {
        return option.value.isEmpty() && typed == u"--"_s + option.name;
    });
    return takesNone
               ? translated("CommandLine", "unexpected value after \"%1\"").arg(leftToRight(typed))
               : missingValue(typed);
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
        parser.addOption({names, {}, option.value});
    }
}

/// The parser knows no values that may be missing: returns the arguments with an empty one where
/// the seconds are not given.
QStringList withSeconds(const QStringList& arguments) {
    static const QRegularExpression number(uR"(^\d+$)"_s);
    QStringList result;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString& argument = arguments[i];
        const bool isBack = argument == u"--back" || argument == u"-back";
        const bool hasSeconds = isBack && number.match(arguments.value(i + 1)).hasMatch();
        result += isBack ? u"--back="_s + (hasSeconds ? arguments[++i] : QString()) : argument;
    }
    return result;
}

/// Returns whether `value` is no value for `option`. `arguments` are all arguments of the program.
bool lacksValue(const Option& option, const QString& value, const QStringList& arguments) {
    // The parser takes the next option for a value; only "--add=--x" means a leading "--".
    const bool isOption = value.startsWith(u"--") && arguments.contains(value);
    // The text to add can still be typed into the page that opens.
    const bool mayBeEmpty = option.name == Verb::Add::name || option.name == Verb::Back::name;
    const bool isMissing = value.trimmed().isEmpty() && !mayBeEmpty;
    return isOption || isMissing;
}

bool isSeconds(const QString& text) {
    constexpr int day = 86400;
    bool isNumber = false;
    const int seconds = text.toInt(&isNumber);
    return text.isEmpty() || (isNumber && seconds > 0 && seconds <= day);
}

/// Returns the options in the order in which they were typed.
std::expected<QList<Word>, UsageError> optionsOf(const QStringList& arguments) {
    QCommandLineParser parser;
    addOptions(parser);
    const bool isParsed = parser.parse(QStringList{u"orvane"_s} + withSeconds(arguments));
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
                return usageError(missingValue(u"--"_s + name));
            if (name == Verb::Back::name && !isSeconds(word.value))
                return usageError(
                    translated("CommandLine", "\"%1\" is no number of seconds").arg(word.value));
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
            return usageError(translated("CommandLine", "--json needs --list"));
        if (!std::ranges::all_of(words,
                                 [](const Word& w) { return w.name == list || w.name == json; }))
            return usageError(translated("CommandLine", "--list can only be combined with --json"));
        return ListChannels{has(json) ? ListChannels::Format::json : ListChannels::Format::table};
    }
    if (has(Verb::Quit::name) && words.size() > 1)
        return usageError(
            translated("CommandLine", "--quit cannot be combined with other options"));
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
        translated("CommandLine",
                   "Usage: orvane [OPTIONS]\n\n"
                   "Plays live channels in a small window. While it runs, starting it again shows\n"
                   "that window, and the running copy carries out the options in their order.") +
        u"\n\n"_s;
    for (const Option& option : options()) {
        const QString usage =
            u"  --"_s + option.name + (option.value.isEmpty() ? u""_s : u' ' + option.value);
        text += usage.leftJustified(column) + u' ' + translated("CommandLine", option.explanation) +
                u'\n';
    }
    return text + u'\n' +
           translated("CommandLine",
                      "Exit codes: 0 done, 1 failed, 2 not understood or no such channel.") +
           u'\n';
}

} // namespace orvane::CommandLine
