// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/commands/CommandLine.h"

#include "app/commands/Versions.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

/// Returns the verbs as a message, the name of another command, or the error.
QString parsed(const QStringList& arguments) {
    const auto command = CommandLine::parse(arguments);
    if (!command)
        return command.error().message;
    if (const auto* run = std::get_if<CommandLine::Run>(&*command))
        return (run->isVerbose ? u"verbose "_s : u""_s) +
               QString::fromUtf8(Verb::encode(run->verbs));
    if (const auto* list = std::get_if<CommandLine::ListChannels>(&*command))
        return list->format == CommandLine::ListChannels::Format::json ? u"list json"_s : u"list"_s;
    return std::holds_alternative<CommandLine::ShowHelp>(*command) ? u"help"_s : u"version"_s;
}

QString message(const QString& verbs) {
    return uR"({"verbs":[%1],"version":1})"_s.arg(verbs);
}

TEST(CommandLine, KeepsVerbsInOrderWithTheirTexts) {
    EXPECT_EQ(parsed({}), message(u""_s));
    EXPECT_EQ(parsed({u"--play"_s, u"-الجزيرة"_s, u"--mute"_s, u"--next"_s, u"--next"_s}),
              message(uR"({"name":"play","text":"-الجزيرة"},{"name":"mute"},)"
                      R"({"name":"next"},{"name":"next"})"_s));
    EXPECT_EQ(parsed({u"--add=--x=\n"_s}), message(uR"({"name":"add","text":"--x=\n"})"_s));
    EXPECT_EQ(parsed({u"--back"_s, u"--back"_s, u"30"_s, u"-back"_s, u"--live"_s}),
              message(uR"({"name":"back","text":""},{"name":"back","text":"30"},)"
                      R"({"name":"back","text":""},{"name":"live"})"_s));
    EXPECT_EQ(parsed({u"--add"_s, u""_s}), message(uR"({"name":"add","text":""})"_s));
    EXPECT_EQ(parsed({u"-session"_s, u"some_id"_s, u"--verbose"_s, u"--quit"_s}),
              u"verbose "_s + message(uR"({"name":"quit"})"_s));
}

TEST(CommandLine, RunsOneCommandOrReportsAnError) {
    EXPECT_EQ(parsed({u"--mute"_s, u"-h"_s, u"--version"_s}), u"help");
    EXPECT_EQ(parsed({u"--version"_s}), u"version");
    EXPECT_EQ(parsed({u"--json"_s, u"--list"_s}), u"list json");
    EXPECT_EQ(parsed({u"--list"_s}), u"list");
    const QList<std::pair<QStringList, QString>> refused{
        {{u"--mutee"_s}, u"unexpected argument \"--mutee\"; did you mean --mute?"_s},
        {{u"-x"_s}, u"unexpected argument \"-x\""_s},
        {{u"dwnews"_s}, u"unexpected argument \"dwnews\""_s},
        {{u""_s}, u"unexpected argument \"\""_s},
        {{u"--play"_s}, u"missing value after \"--play\""_s},
        {{u"-session"_s}, u"missing value after \"-session\""_s},
        {{u"--add"_s, u"--mute"_s}, u"missing value after \"--add\""_s},
        {{u"--play= "_s}, u"missing value after \"--play\""_s},
        {{u"--next=2"_s}, u"unexpected value after \"--next\""_s},
        {{u"--back=x"_s}, u"\"x\" is no number of seconds"_s},
        {{u"--back"_s, u"0"_s}, u"\"0\" is no number of seconds"_s},
        {{u"--back"_s, u"soon"_s}, u"unexpected argument \"soon\""_s},
        {{u"--json"_s}, u"--json needs --list"_s},
        {{u"--list"_s, u"--mute"_s}, u"--list can only be combined with --json"_s},
        {{u"--quit"_s, u"--next"_s}, u"--quit cannot be combined with other options"_s},
        {{u"--show"_s}, u"unexpected argument \"--show\""_s},
    };
    for (const auto& [arguments, error] : refused)
        EXPECT_EQ(parsed(arguments), error);
}

TEST(CommandLine, PrintsAHelpThatFitsOnOneScreen) {
    const QStringList lines = CommandLine::help().split(u'\n');
    EXPECT_LE(lines.size(), 24);
    for (const QString& line : lines)
        EXPECT_LE(line.size(), 80) << line.toStdString();
}

TEST(CommandLine, PrintsTheVersionsOfOrvaneAndItsDependencies) {
    const QStringList patterns{uR"(Orvane \d+\.\d+\.\d+)"_s, uR"(commit \S+)"_s,
                               u"Qt "_s + QRegularExpression::escape(QLatin1StringView(qVersion())),
                               uR"(libmpv client API [12]\.\d+)"_s, uR"(yt-dlp \S.*)"_s};
    const QString pattern = patterns.join(u'\n') + u'\n';
    const QString text = versionText();
    EXPECT_TRUE(
        QRegularExpression(QRegularExpression::anchoredPattern(pattern)).match(text).hasMatch())
        << text.toStdString();
}

TEST(CommandLine, DecodesAMessageCompletelyOrNotAtAll) {
    const auto typed = CommandLine::parse({u"--play"_s, u"x\n"_s, u"--toggle-ghost"_s});
    const QByteArray sent = Verb::encode(std::get<CommandLine::Run>(typed.value()).verbs);
    EXPECT_FALSE(sent.contains('\n'));
    const auto received = Verb::decode(sent);
    ASSERT_TRUE(received && received->size() == 2);
    EXPECT_EQ(std::get<Verb::Play>(received->at(0)).text, u"x\n");
    for (const char* bad :
         {"", "[]", "{\"version\":1", R"({"version":1})", R"({"version":2,"verbs":[]})",
          R"({"version":1,"verbs":[{"name":"mute"},{"name":"dance"}]})",
          R"({"version":1,"verbs":[{"name":"play"}]})", R"({"version":1,"verbs":["mute"]})"})
        EXPECT_FALSE(Verb::decode(bad)) << bad;
}

} // namespace
} // namespace orvane
