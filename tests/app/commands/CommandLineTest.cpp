// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/commands/CommandLine.h"

#include <gtest/gtest.h>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

/// The verbs as a message, what is to be shown, or the complaint.
QString parsed(const QStringList& arguments) {
    const auto command = CommandLine::parse(arguments);
    if (!command)
        return command.error().message;
    if (const auto* run = std::get_if<CommandLine::Run>(&*command))
        return QString::fromUtf8(Verb::encode(run->verbs));
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
    EXPECT_EQ(parsed({u"--add"_s, u""_s}), message(uR"({"name":"add","text":""})"_s));
    EXPECT_EQ(parsed({u"-session"_s, u"some_id"_s, u"--verbose"_s, u"--quit"_s}),
              message(uR"({"name":"quit"})"_s));
}

TEST(CommandLine, ShowsOneThingAndRefusesWhatMakesNoSense) {
    EXPECT_EQ(parsed({u"--mute"_s, u"-h"_s, u"--version"_s}), u"help");
    EXPECT_EQ(parsed({u"--version"_s}), u"version");
    EXPECT_EQ(parsed({u"--json"_s, u"--list"_s}), u"list json");
    EXPECT_EQ(parsed({u"--list"_s}), u"list");
    const QList<std::pair<QStringList, QString>> refused{
        {{u"--mutee"_s}, u"unexpected argument \"--mutee\"; did you mean --mute?"_s},
        {{u"dwnews"_s}, u"unexpected argument \"dwnews\""_s},
        {{u""_s}, u"unexpected argument \"\""_s},
        {{u"--play"_s}, u"Missing value after '--play'."_s},
        {{u"--add"_s, u"--mute"_s}, u"--add needs TEXT"_s},
        {{u"--play= "_s}, u"--play needs ID|NAME"_s},
        {{u"--next=2"_s}, u"Unexpected value after '--next'."_s},
        {{u"--json"_s}, u"--json needs --list"_s},
        {{u"--list"_s, u"--mute"_s}, u"--list goes with no other option but --json"_s},
        {{u"--quit"_s, u"--next"_s}, u"--quit goes with no other option"_s},
        {{u"--show"_s}, u"unexpected argument \"--show\""_s},
    };
    for (const auto& [arguments, complaint] : refused)
        EXPECT_EQ(parsed(arguments), complaint);
}

TEST(CommandLine, AMessageIsUnderstoodAsAWholeOrNotAtAll) {
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
