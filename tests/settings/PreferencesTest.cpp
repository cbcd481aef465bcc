// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/Preferences.h"

#include "model/BuiltInChannels.h"
#include "settings/UserDefaults.h"
#include "support/FileSizeLimit.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <thread>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

class PreferencesTest : public testing::Test {
protected:
    void write(const QByteArray& text) const {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }
    [[nodiscard]] static QByteArray read(const QString& name) {
        QFile file(name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    [[nodiscard]] QJsonObject contents() const {
        return QJsonDocument::fromJson(read(path)).object();
    }
    /// Starts a second copy of the program that writes numbers under a key.
    void startWriter(QProcess& writer, const QString& key, int count) const {
        writer.start(QCoreApplication::applicationFilePath(),
                     {u"--write-preferences"_s, path, key, QString::number(count)});
        ASSERT_TRUE(writer.waitForReadyRead());
    }
    void expectDefaults() const {
        EXPECT_EQ(preferences.resolution(), Resolution::r480);
        EXPECT_EQ(preferences.volume(), 1.0F);
        EXPECT_FALSE(preferences.isMuted());
        EXPECT_FALSE(preferences.lastChannelID());
        EXPECT_TRUE(preferences.autoPlayLastChannel());
        EXPECT_EQ(preferences.enabledChannelIDs().size(), builtInChannels().size());
        EXPECT_EQ(preferences.favoriteChannelIDs(),
                  (QStringList{u"alarabiya"_s, u"alhadath"_s, u"aljazeera"_s, u"aljazeeralive"_s}));
        EXPECT_FALSE(preferences.windowFrame());
        EXPECT_EQ(preferences.windowSizePreset(), 420);
        EXPECT_EQ(preferences.windowOpacity(), 1.0);
        EXPECT_EQ(preferences.theme(), AppTheme::system);
        EXPECT_FALSE(preferences.ghostModeEnabled());
        EXPECT_TRUE(preferences.customChannels().isEmpty());
        EXPECT_FALSE(preferences.onboardingCompleted());
    }

    QTemporaryDir folder;
    const QString path = folder.filePath(u"sub/preferences.json"_s);
    UserDefaults defaults{path};
    Preferences preferences{defaults};
};

TEST_F(PreferencesTest, ReadAsDefaultsIfAbsentOrOfTheWrongType) {
    expectDefaults();
    defaults.synchronize();
    EXPECT_FALSE(QFileInfo::exists(path)) << "reading writes nothing";
    QDir().mkpath(QFileInfo(path).path());
    for (const char* value :
         {R"([])", R"({})", R"(null)", R"("720")", R"(["a", 1])", R"("[{\"handle\":\"x\"}]")"}) {
        QByteArray text = "{";
        for (const char* key : {"resolution", "volume", "isMuted", "autoPlayLastChannel",
                                "windowSizePreset", "windowOpacity", "theme", "ghostModeEnabled",
                                "customChannels", "onboardingCompleted"})
            text += QByteArray("\"") + key + "\": " + value + ", ";
        text += R"("lastChannelID": 3, "windowFrame": 4, "favoriteChannelIDs": "alarabiya",)"
                R"("enabledChannelIDs": ["alarabiya", 5]})";
        write(text);
        SCOPED_TRACE(value);
        expectDefaults();
    }
    write(R"({"volume": 1e308, "windowOpacity": -1e308})");
    EXPECT_TRUE(std::isfinite(preferences.volume()));
    EXPECT_EQ(preferences.usableVolume(), 1.0F);
    EXPECT_EQ(preferences.usableWindowOpacity(), 0.1);
    write(R"({"volume": 0, "windowSizePreset": 1e300, "isMuted": 1})");
    EXPECT_EQ(preferences.volume(), 0.0F);
    EXPECT_EQ(preferences.windowSizePreset(), 420);
    EXPECT_FALSE(preferences.isMuted());
}

TEST_F(PreferencesTest, AreReadBackAsTheyWereSet) {
    preferences.setResolution(Resolution::rBest);
    preferences.setVolume(0.3F);
    preferences.setMuted(true);
    preferences.setLastChannelID(u"dwnews"_s);
    preferences.setAutoPlayLastChannel(false);
    preferences.setEnabledChannelIDs({});
    preferences.setFavoriteChannelIDs({u"wion"_s, u"cgtn"_s});
    const QRectF frame(-1919.5, 1.0 / 3, 480, 314);
    preferences.setWindowFrame(frame);
    preferences.setWindowSizePreset(720);
    preferences.setWindowOpacity(0.3);
    preferences.setTheme(AppTheme::light);
    preferences.setGhostModeEnabled(true);
    preferences.setOnboardingCompleted(true);
    defaults.synchronize();

    UserDefaults otherDefaults(path);
    const Preferences other(otherDefaults);
    EXPECT_EQ(other.resolution(), Resolution::rBest);
    EXPECT_EQ(other.volume(), 0.3F);
    EXPECT_TRUE(other.isMuted());
    EXPECT_EQ(other.lastChannelID(), u"dwnews"_s);
    EXPECT_FALSE(other.autoPlayLastChannel());
    EXPECT_TRUE(other.enabledChannelIDs().isEmpty());
    EXPECT_EQ(other.favoriteChannelIDs(), (QStringList{u"wion"_s, u"cgtn"_s}));
    EXPECT_EQ(other.windowFrame(), frame);
    EXPECT_EQ(other.windowSizePreset(), 720);
    EXPECT_EQ(other.windowOpacity(), 0.3);
    EXPECT_EQ(other.usableWindowOpacity(), 0.3);
    preferences.setWindowOpacity(-1e300);
    EXPECT_EQ(preferences.usableWindowOpacity(), 0.1);
    preferences.setWindowOpacity(1e300);
    EXPECT_EQ(preferences.usableWindowOpacity(), 1.0);
    EXPECT_EQ(other.theme(), AppTheme::light);
    EXPECT_TRUE(other.ghostModeEnabled());
    EXPECT_TRUE(other.onboardingCompleted());

    preferences.setLastChannelID(std::nullopt);
    preferences.setWindowFrame(std::nullopt);
    preferences.setWindowSizePreset(0);
    defaults.synchronize();
    EXPECT_FALSE(contents().contains(u"lastChannelID"));
    EXPECT_FALSE(contents().contains(u"windowFrame"));
    EXPECT_EQ(other.windowSizePreset(), 420);
}

TEST_F(PreferencesTest, ReadAnInvalidFrameAsEmpty) {
    QDir().mkpath(QFileInfo(path).path());
    for (const char* text :
         {"", "{{1, 2}, {3}}", "1 2 3 4", "{{nan, 0}, {1, 1}}", "{{a, b}, {c, d}}"}) {
        write(QByteArray(R"({"windowFrame": ")") + text + R"("})");
        EXPECT_EQ(preferences.windowFrame(), QRectF()) << text;
    }
}

TEST_F(PreferencesTest, IdentifyCustomChannelsByHandleIgnoringCase) {
    preferences.addCustomChannel(u"AbcNews"_s, u"First"_s);
    preferences.addCustomChannel(u"abcnews"_s, u"Second"_s);
    ASSERT_EQ(preferences.customChannels().size(), 1);
    EXPECT_EQ(preferences.customChannels().first().id(), u"custom_abcnews"_s);
    EXPECT_EQ(preferences.customChannels().first().handle(), u"AbcNews"_s);
    EXPECT_EQ(preferences.customChannels().first().nameEn(), u"First"_s);
    EXPECT_EQ(preferences.enabledChannelIDs().size(), builtInChannels().size() + 1);
    defaults.synchronize();
    EXPECT_EQ(contents().value(u"customChannels"), uR"([{"handle":"AbcNews","name":"First"}])"_s);

    // Two handles that differ only in case occur only in a file edited by hand.
    write(
        R"({"customChannels": "[{\"handle\":\"A\",\"name\":\"1\"},{\"handle\":\"b\",\"name\":\"2\"},)"
        R"({\"name\":\"3\",\"handle\":\"a\"}]", "enabledChannelIDs": ["custom_a"]})");
    EXPECT_EQ(preferences.customChannels().size(), 3);
    preferences.removeCustomChannel(u"a"_s);
    ASSERT_EQ(preferences.customChannels().size(), 1);
    EXPECT_EQ(preferences.customChannels().first().nameEn(), u"2"_s);
    EXPECT_EQ(preferences.enabledChannelIDs(), QSet<QString>{u"custom_a"_s});
}

TEST_F(PreferencesTest, LoseNothingOfADamagedFile) {
    QDir().mkpath(QFileInfo(path).path());
    const auto expectNothingLost = [this](const QByteArray& text) {
        QFile::remove(path + u".bad"_s);
        write(text);
        UserDefaults store(path);
        Preferences over(store);
        EXPECT_LE(over.customChannels().size(), 1);
        EXPECT_LE(over.favoriteChannelIDs().size(), 4);
        over.setMuted(true);
        store.synchronize();
        const QJsonDocument before = QJsonDocument::fromJson(text);
        QJsonObject expected = before.object();
        expected.insert(u"isMuted"_s, true);
        EXPECT_EQ(contents(), expected) << text.constData();
        EXPECT_EQ(read(path + u".bad"_s), before.isObject() ? QByteArray() : text);
    };
    for (const QByteArray& text : {QByteArray("[1]"), QByteArray("\xff\0x", 3)})
        expectNothingLost(text);
    const QByteArray whole = R"({"customChannels": "[{\"handle\":\"Abc\",\"name\":\"قناة\"}]",)"
                             R"( "favoriteChannelIDs": ["wion"], "unknown": {"a": [1, null]},)"
                             R"( "volume": 0.25, "windowFrame": "{{1, 2}, {480, 314}}"})";
    for (qsizetype i = 0; i < whole.size(); ++i) {
        expectNothingLost(whole.first(i));
        QByteArray corrupted = whole;
        corrupted[i] = static_cast<char>(corrupted[i] ^ (1 << i % 8));
        expectNothingLost(corrupted);
    }
}

TEST_F(PreferencesTest, StayInMemoryIfTheFileCannotBeWritten) {
    QDir().mkpath(path);
    preferences.setMuted(true);
    defaults.synchronize();
    EXPECT_TRUE(preferences.isMuted());
    EXPECT_TRUE(QFileInfo(path).isDir());
    QDir().rmdir(path);
    preferences.setVolume(0.5F);
    defaults.synchronize();
    EXPECT_EQ(contents(), (QJsonObject{{u"isMuted"_s, true}, {u"volume"_s, 0.5}}));
}

TEST_F(PreferencesTest, SurviveAFullDisk) {
    preferences.setWindowOpacity(0.5);
    defaults.synchronize();
    {
        const test::FileSizeLimit disk(0);
        preferences.setWindowOpacity(0.6);
        defaults.synchronize();
        EXPECT_DOUBLE_EQ(preferences.windowOpacity(), 0.6);
        UserDefaults later(path);
        EXPECT_DOUBLE_EQ(Preferences(later).windowOpacity(), 0.5) << "the file is unchanged";
    }
    defaults.synchronize();
    UserDefaults later(path);
    EXPECT_DOUBLE_EQ(Preferences(later).windowOpacity(), 0.6);
}

TEST_F(PreferencesTest, SeeTheWritesOfAnotherCopyAndKeepUnknownKeys) {
    QDir().mkpath(QFileInfo(path).path());
    write(R"({"unknown": {"a": [1, "x"]}, "volume": 0.25})");
    EXPECT_EQ(preferences.volume(), 0.25F);
    UserDefaults otherDefaults(path);
    Preferences other(otherDefaults);
    other.setVolume(0.75F);
    otherDefaults.synchronize();
    EXPECT_EQ(preferences.volume(), 0.75F);
    preferences.setMuted(true);
    defaults.synchronize();
    EXPECT_EQ(other.volume(), 0.75F);
    EXPECT_TRUE(other.isMuted());
    EXPECT_TRUE(contents().value(u"unknown").isObject());
}

TEST_F(PreferencesTest, LoseNothingWhenTwoCopiesWriteAtOnce) {
    constexpr int count = 150;
    QProcess first;
    QProcess second;
    startWriter(first, u"first"_s, count);
    startWriter(second, u"second"_s, count);
    for (QProcess* writer : {&first, &second})
        ASSERT_TRUE(writer->waitForFinished());
    EXPECT_EQ(contents(), (QJsonObject{{u"first"_s, count}, {u"second"_s, count}}));
}

TEST_F(PreferencesTest, AreIntactAfterAKillAtAnyMoment) {
    preferences.setLastChannelID(u"wion"_s);
    defaults.synchronize();
    for (int round = 0; round < 25; ++round) {
        QProcess writer;
        startWriter(writer, u"number"_s, 0);
        // Kills it at a random point of a write, a little later each time.
        std::this_thread::sleep_for(std::chrono::milliseconds(1 + round % 7));
        writer.kill();
        writer.waitForFinished();
        const QJsonObject now = contents();
        ASSERT_EQ(now.value(u"lastChannelID"), u"wion"_s);
        ASSERT_GT(now.value(u"number").toDouble(), 0);
    }
    // No stale lock of a killed writer blocks other writers.
    preferences.setMuted(true);
    defaults.synchronize();
    EXPECT_EQ(contents().value(u"isMuted"), true);
}

} // namespace
} // namespace orvane
