// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/commands/CommandLine.h"

#include "base/EditDistance.h"

#include <algorithm>

namespace orvane::CommandLine {

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView list{"list"};
constexpr QLatin1StringView json{"json"};
constexpr QLatin1StringView version{"version"};
constexpr QLatin1StringView helpOption{"help"};

struct Option {
    QString name;
    /// What stands for its value in the help; empty when it has none.
    QString value;
    QString explanation;
};

const QList<Option>& options() {
    static const QList<Option> table{
        {u"play"_s, u"ID|NAME"_s, u"play this channel, by its id or one of its names"_s},
        {u"next"_s, {}, u"play the next of the enabled channels"_s},
        {u"previous"_s, {}, u"play the one before"_s},
        {u"mute"_s, {}, u"mute, or unmute"_s},
        {u"toggle-ghost"_s, {}, u"turn ghost mode on, or off"_s},
        {u"settings"_s, {}, u"open the settings"_s},
        {u"add"_s, u"TEXT"_s,
         u"look up a channel to add: a link, a handle or a name; \"\" to be asked"_s},
        {u"quit"_s, {}, u"end the running Orvane; without one, do nothing"_s},
        {list, {}, u"print id, category and name of every channel"_s},
        {json, {}, u"with --list: as JSON"_s},
        {version, {}, u"print the version"_s},
        {helpOption, {}, u"print this"_s},
    };
    return table;
}

std::unexpected<UsageError> usageError(const QString& message) {
    return std::unexpected(UsageError{message});
}

std::unexpected<UsageError> unknownOption(const QString& name) {
    QString message = u"there is no option --"_s + name;
    for (const Option& option : options()) {
        if (isLikelyTypo(name, option.name))
            return usageError(message + u"; did you mean --"_s + option.name + u'?');
    }
    return usageError(message);
}

/// One word or two: an option and its value.
struct Word {
    QString name;
    QString value;
};

/// Takes the first option off the list.
std::expected<Word, UsageError> takeOption(QStringList& rest) {
    QString first = rest.takeFirst();
    if (first == u"-h")
        first = u"--help"_s;
    if (!first.startsWith(u"--"))
        return usageError(u"\"%1\" is no option"_s.arg(first));
    const qsizetype equals = first.indexOf(u'=');
    const QString name = first.sliced(2, (equals < 0 ? first.size() : equals) - 2);
    const auto option = std::ranges::find(options(), name, &Option::name);
    if (option == options().end())
        return unknownOption(name);
    if (option->value.isEmpty())
        return equals < 0 ? std::expected<Word, UsageError>(Word{name, {}})
                          : usageError(u"--%1 has no value"_s.arg(name));
    // An option is not another one's value, unless it is attached to it.
    std::optional<QString> value;
    if (equals >= 0)
        value = first.sliced(equals + 1);
    else if (!rest.isEmpty() && !rest.first().startsWith(u"--"))
        value = rest.takeFirst();
    // What is added can still be typed where it is asked for.
    const bool mayBeBlank = name == Verb::Add::name;
    if (!value || (value->trimmed().isEmpty() && !mayBeBlank))
        return usageError(u"--%1 needs %2"_s.arg(name, option->value));
    return Word{name, *value};
}

std::expected<Command, UsageError> commandOf(const QList<Word>& words) {
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
            return usageError(u"--list goes with no other option but --json"_s);
        return ListChannels{has(json) ? ListChannels::Format::json : ListChannels::Format::table};
    }
    if (has(Verb::Quit::name) && words.size() > 1)
        return usageError(u"--quit goes with no other option"_s);
    Run run;
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
    QList<Word> words;
    QStringList rest = arguments;
    while (!rest.isEmpty()) {
        // What a session manager starts the program with to bring it back; the toolkit takes it.
        if (rest.first() == u"-session") {
            rest.remove(0, std::min(rest.size(), qsizetype{2}));
            continue;
        }
        auto word = takeOption(rest);
        if (!word)
            return std::unexpected(word.error());
        words += *word;
    }
    return commandOf(words);
}

QString help() {
    constexpr int column = 22;
    QString text = u"Usage: orvane [OPTIONS]\n\n"
                   "Plays live channels in a small window. While it runs, starting it again shows "
                   "that window,\nand the options are carried out by the copy that runs, in their "
                   "order.\n\n"_s;
    for (const Option& option : options()) {
        const QString usage =
            u"  --"_s + option.name + (option.value.isEmpty() ? u""_s : u' ' + option.value);
        text += usage.leftJustified(column) + u' ' + option.explanation + u'\n';
    }
    return text + u"\nExit codes: 0 done, 1 failed, 2 not understood or no such channel.\n"_s;
}

} // namespace orvane::CommandLine
