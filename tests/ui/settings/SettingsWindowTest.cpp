// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/SettingsWindow.h"

#include "base/TaskScope.h"
#include "state/AppNotification.h"
#include "support/EventLoop.h"
#include "support/FakeEvents.h"
#include "support/RecordingActions.h"
#include "support/RecordingPlayer.h"
#include "support/StateFixture.h"
#include "ui/player/PlayerWindow.h"
#include "ui/settings/StarButton.h"
#include "ui/settings/YtDlpSection.h"
#include "ui/theme/SystemColors.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QCoroFuture>
#include <QLabel>
#include <QLineEdit>
#include <QPromise>
#include <QPushButton>
#include <QScrollArea>
#include <QSlider>
#include <QTabWidget>
#include <QTest>

#include <gtest/gtest.h>

namespace orvane {

using namespace Qt::StringLiterals;
using test::runUntil;

namespace {

/// Answers calls when, and in the order in which, the test says so.
class FakeResolver {
public:
    struct Call {
        QString input;
        std::stop_token stop;
        std::shared_ptr<QPromise<ChannelResolver::Result>> answer;
    };
    std::vector<Call> calls;

    QCoro::Task<ChannelResolver::Result> resolve(QString input, std::stop_token stop) {
        auto answer = std::make_shared<QPromise<ChannelResolver::Result>>();
        answer->start();
        calls.push_back({input, stop, answer});
        QFuture<ChannelResolver::Result> future = answer->future();
        const ChannelResolver::Result result = co_await future;
        co_return ChannelResolver::Result(result);
    }

    void answer(size_t call, ChannelResolver::Result result) {
        calls.at(call).answer->addResult(std::move(result));
        calls.at(call).answer->finish();
    }
};

/// Its update ends when the test says so.
class FakeUpdates final : public YtDlpUpdates {
public:
    YtDlpStatus used{
        .program = u"/usr/bin/yt-dlp"_s, .version = u"a"_s, .released = {}, .newer = {}};
    std::function<void(QString)> progress;
    QPromise<YtDlpUpdateOutcome::Value> outcome;

    QCoro::Task<std::optional<YtDlpStatus>> status() override { co_return std::optional(used); }
    QCoro::Task<YtDlpUpdateOutcome::Value> update(std::function<void(QString)> report) override {
        progress = std::move(report);
        outcome = {};
        outcome.start();
        QFuture<YtDlpUpdateOutcome::Value> future = outcome.future();
        YtDlpUpdateOutcome::Value value = co_await future;
        co_return value;
    }
    void end(YtDlpUpdateOutcome::Value value) {
        outcome.addResult(std::move(value));
        outcome.finish();
        test::settle();
    }
};

class SettingsWindowTest : public testing::Test, protected test::StateFixture {
protected:
    SettingsWindowTest() { open(); }
    ~SettingsWindowTest() override {
        window.reset();
        for (size_t i = 0; i < resolver.calls.size(); ++i) {
            if (!resolver.calls[i].answer->future().isFinished())
                resolver.answer(i, std::unexpected(ChannelResolver::ResolveError{}));
        }
        EXPECT_TRUE(runUntil([&] { return tasks.count() == 0; }));
    }

    void open() {
        window = std::make_unique<SettingsWindow>(SettingsWindow::Collaborators{
            .preferences = preferences,
            .registry = registry,
            .state = state,
            .notifications = notifications,
            .tasks = tasks,
            .resolve = [this](QString input,
                              std::stop_token stop) { return resolver.resolve(input, stop); },
            .siteHost = u"site.example"_s,
            .autostart = Autostart({.folder = autostartFolder,
                                    .identifier = u"orvane"_s,
                                    .name = u"Orvane"_s,
                                    .executable = u"/opt/my 100% \"own\"/orvane"_s}),
            .ytDlp = ytDlp,
            .resizePlayer = [this](QSizeF size) { player.setContentSize(size); }});
        window->show();
    }

    template <class T>
    T* part(const QString& name) {
        return window->findChild<T*>(name);
    }
    void selectTab(const QString& title) {
        auto* tabs = part<QTabWidget>(u"tabView"_s);
        for (int i = 0; i < tabs->count(); ++i) {
            if (tabs->tabText(i) == title)
                tabs->setCurrentIndex(i);
        }
        ASSERT_EQ(tabs->tabText(tabs->currentIndex()), title);
    }
    void click(const QString& name) { part<QAbstractButton>(name)->click(); }
    void type(const QString& text) {
        auto* input = part<QLineEdit>(u"channelInput"_s);
        input->selectAll();
        QTest::keyClicks(input, text);
    }
    void answer(size_t call, const QString& handle, const QString& name) {
        resolver.answer(call, ChannelResolver::ResolvedChannel{handle, name});
        test::settle();
    }
    QString status() { return part<QLabel>(u"statusLabel"_s)->text(); }
    QColor statusColor() {
        const auto* label = part<QLabel>(u"statusLabel"_s);
        return label->palette().color(label->foregroundRole());
    }
    /// The texts of the list of custom channels.
    QStringList customRows() {
        QStringList rows;
        for (const auto* label : part<QScrollArea>(u"customScroll"_s)->findChildren<QLabel*>())
            rows += label->text();
        return rows;
    }
    bool isPreviewShown() { return part<QWidget>(u"previewBg"_s)->isVisible(); }

    QString autostartFolder = folder.filePath(u"config/autostart"_s);
    TaskScope tasks;
    test::FakeEvents events;
    test::RecordingActions actions;
    test::RecordingPlayer commands;
    PlayerWindow player{{.preferences = preferences,
                         .state = state,
                         .player = commands,
                         .notifications = notifications,
                         .events = events,
                         .actions = actions,
                         .contextMenu = {},
                         .videoOutput = VideoOutput::software}};
    FakeResolver resolver;
    FakeUpdates ytDlp;
    std::unique_ptr<SettingsWindow> window;
};

TEST_F(SettingsWindowTest, GeneralControlsWriteAtOnceAndShowWhatIsStored) {
    std::optional<AppTheme> announced;
    const auto token = notifications.addObserver(AppNotification::themeChanged,
                                                 [&](AppTheme theme) { announced = theme; });
    auto* resolution = part<QComboBox>(u"resolution"_s);
    EXPECT_EQ(resolution->currentText(), u"480p"_s);
    QTest::keyClicks(resolution, u"B"_s);
    EXPECT_EQ(state.resolution(), Resolution::rBest);
    QTest::keyClicks(part<QComboBox>(u"theme"_s), u"D"_s);
    EXPECT_EQ(announced, AppTheme::dark);
    EXPECT_EQ(preferences.theme(), AppTheme::dark);
    QTest::keyClicks(part<QComboBox>(u"language"_s), u"F"_s);
    EXPECT_EQ(preferences.language(), Language::french);
    QTest::keyClick(part<QComboBox>(u"language"_s), Qt::Key_Home);
    EXPECT_EQ(preferences.language(), std::nullopt);
    click(u"autoPlay"_s);
    EXPECT_FALSE(preferences.autoPlayLastChannel());
    click(u"shortcutsInTextFields"_s);
    EXPECT_FALSE(preferences.shortcutsInTextFields());

    window->close();
    state.setResolution(Resolution::r360); // As a menu does.
    window->show();
    EXPECT_EQ(resolution->currentText(), u"360p"_s);
    EXPECT_FALSE(part<QCheckBox>(u"autoPlay"_s)->isChecked());
}

TEST_F(SettingsWindowTest, StartsAtLoginUnlessTheDesktopDisablesTheEntry) {
    const QString path = autostartFolder + u"/orvane.desktop"_s;
    const auto isOn = [&] {
        window->close();
        window->show();
        return part<QCheckBox>(u"startAtLogin"_s)->isChecked();
    };
    EXPECT_FALSE(isOn());
    click(u"startAtLogin"_s);
    EXPECT_TRUE(isOn());
    QFile entry(path);
    ASSERT_TRUE(entry.open(QIODevice::ReadWrite));
    EXPECT_TRUE(entry.readAll().contains(R"(Exec="/opt/my 100%% \\"own\\"/orvane")"));
    entry.write("Hidden=true\n");
    entry.close();
    EXPECT_FALSE(isOn());
    click(u"startAtLogin"_s);
    EXPECT_TRUE(isOn());
    click(u"startAtLogin"_s);
    EXPECT_FALSE(QFile::exists(path));

    ASSERT_TRUE(QDir().rmdir(autostartFolder));
    ASSERT_TRUE(
        QFile(autostartFolder).open(QIODevice::WriteOnly)); // A file in place of the folder.
    click(u"startAtLogin"_s);
    EXPECT_EQ(part<QLabel>(u"autostartFault"_s)->text(),
              u"The autostart folder cannot be changed."_s);
    EXPECT_FALSE(isOn());
}

TEST_F(SettingsWindowTest, UpdatesYtDlpAndSaysHowItEnded) {
    using namespace YtDlpUpdateOutcome;
    const auto line = [this](const QString& name) { return part<QLabel>(name)->text(); };
    const QDate day(2026, 11, 24);
    EXPECT_EQ(
        describe(YtDlpStatus{.program = u"/bin/yt-dlp"_s,
                             .version = u"2026.10.26"_s,
                             .released = QDate(2026, 10, 26),
                             .newer = u"2026.11.20"_s},
                 day),
        u"yt-dlp 2026.10.26 (29 days old), /bin/yt-dlp. Where the site finds it too old: 2026.11.20."_s);
    EXPECT_EQ(describe(std::nullopt, day), u"yt-dlp is not installed."_s);

    test::settle();
    EXPECT_EQ(line(u"ytDlpStatus"_s), u"yt-dlp a, /usr/bin/yt-dlp"_s);
    click(u"updateYtDlp"_s);
    EXPECT_FALSE(part<QPushButton>(u"updateYtDlp"_s)->isEnabled());
    ytDlp.progress(u"Upgrading..."_s);
    // Closed and opened meanwhile.
    window->hide();
    window->show();
    EXPECT_EQ(line(u"ytDlpOutcome"_s), u"Upgrading..."_s);
    ytDlp.used.version = u"b"_s;
    ytDlp.end(Updated{.from = u"a"_s, .to = u"b"_s});
    EXPECT_EQ(line(u"ytDlpOutcome"_s), u"yt-dlp is updated from a to b."_s);
    EXPECT_EQ(line(u"ytDlpStatus"_s), u"yt-dlp b, /usr/bin/yt-dlp"_s);
    click(u"updateYtDlp"_s);
    ytDlp.end(Failed{u"No network."_s});
    EXPECT_EQ(line(u"ytDlpOutcome"_s), u"No network."_s);

    click(u"updateYtDlp"_s);
    window.reset();
    ytDlp.progress(u"Upgrading..."_s);
    ytDlp.end(UpToDate{u"b"_s});
}

TEST_F(SettingsWindowTest, ChannelsTabIsUpToDateWhenItIsSelected) {
    preferences.addCustomChannel(u"Mine"_s, u"My own"_s);
    preferences.setFavoriteChannelIDs({u"alarabiya"_s, u"dwnews"_s, u"dwnews"_s});
    selectTab(u"Channels"_s);
    EXPECT_TRUE(part<QCheckBox>(u"dwnews"_s)->isChecked());
    EXPECT_TRUE(part<QCheckBox>(u"custom_mine"_s)->isChecked());
    click(u"dwnews"_s);
    EXPECT_FALSE(preferences.enabledChannelIDs().contains(u"dwnews"_s));

    click(u"favourite dwnews"_s);
    EXPECT_EQ(preferences.favoriteChannelIDs(), QStringList{u"alarabiya"_s});
    for (const char* id : {"euronews", "cgtn", "wion", "custom_mine", "alhadath", "aljazeera",
                           "skynewsuk", "abcnews", "cbsnews"})
        click(u"favourite "_s + QLatin1StringView(id));
    EXPECT_EQ(preferences.favoriteChannelIDs().at(4), u"custom_mine"_s);
    const auto toolTip = [&](const QString& id) {
        return part<StarButton>(u"favourite "_s + id)->toolTip();
    };
    EXPECT_EQ(toolTip(u"wion"_s), u"Favourite 4 (key 4)"_s);
    EXPECT_EQ(toolTip(u"custom_mine"_s), u"Favourite 5 (key 6)"_s);
    EXPECT_EQ(toolTip(u"alhadath"_s), u"Favourite 6 (key 5)"_s);
    EXPECT_EQ(toolTip(u"abcnews"_s), u"Favourite 9 (key 7)"_s);
    EXPECT_EQ(toolTip(u"cbsnews"_s), u"Favourite 10"_s);

    selectTab(u"General"_s);
    preferences.setEnabledChannelIDs({u"dwnews"_s});
    preferences.removeCustomChannel(u"mine"_s);
    selectTab(u"Channels"_s);
    EXPECT_TRUE(part<QCheckBox>(u"dwnews"_s)->isChecked());
    EXPECT_FALSE(part<QCheckBox>(u"alarabiya"_s)->isChecked());
    EXPECT_EQ(part<QCheckBox>(u"custom_mine"_s), nullptr);
}

TEST_F(SettingsWindowTest, PresetsAndOpacityReachThePlayerWindow) {
    const auto isChosen = [&](const QString& name) {
        return !part<QPushButton>(name)->styleSheet().isEmpty();
    };
    selectTab(u"Appearance"_s);
    EXPECT_FALSE(isChosen(u"preset320"_s) || isChosen(u"preset480"_s) || isChosen(u"preset720"_s));
    click(u"preset320"_s);
    EXPECT_EQ(preferences.windowSizePreset(), 320);

    const QPointF corner = player.frame().bottomRight();
    click(u"preset720"_s);
    EXPECT_EQ(player.size(), QSize(720, 449));
    EXPECT_EQ(player.frame().bottomRight(), corner) << "it stays in its corner of the screen";
    EXPECT_TRUE(isChosen(u"preset720"_s));
    EXPECT_FALSE(isChosen(u"preset320"_s) || isChosen(u"preset480"_s));

    auto* opacity = part<QSlider>(u"opacity"_s);
    QTest::keyClick(opacity, Qt::Key_Home);
    EXPECT_DOUBLE_EQ(preferences.windowOpacity(), 0.3);
    EXPECT_NEAR(player.windowOpacity(), 0.3, 0.01);
    EXPECT_EQ(part<QLabel>(u"opacityNumber"_s)->text(), u"30 %"_s);
}

TEST_F(SettingsWindowTest, ResolvesAddsAndRemoves) {
    notifications.post(AppNotification::openAddChannel, {});
    EXPECT_EQ(part<QLineEdit>(u"channelInput"_s)->placeholderText(),
              u"@handle or site.example/..."_s);
    const QStringList nothing{u"No custom channels yet. Add one above!"_s};
    EXPECT_EQ(customRows(), nothing);
    type(u"   "_s);
    click(u"resolveBtn"_s);
    EXPECT_EQ(status(), u"Please enter a YouTube URL or handle."_s);
    EXPECT_NEAR(statusColor().hslHue(), SystemColors::red.hslHue(), 2);
    EXPECT_TRUE(resolver.calls.empty());

    type(u" @Some "_s);
    QTest::keyClick(part<QLineEdit>(u"channelInput"_s), Qt::Key_Return);
    ASSERT_EQ(resolver.calls.size(), 1);
    EXPECT_EQ(resolver.calls[0].input, u"@Some"_s);
    EXPECT_EQ(status(), u"Resolving..."_s);
    EXPECT_FALSE(part<QPushButton>(u"resolveBtn"_s)->isEnabled());
    EXPECT_TRUE(part<QWidget>(u"busyIndicator"_s)->isVisible());
    resolver.answer(0, std::unexpected(ChannelResolver::ResolveError{u"Not found."_s}));
    test::settle();
    EXPECT_EQ(status(), u"Not found."_s);
    EXPECT_EQ(part<QLineEdit>(u"channelInput"_s)->text(), u" @Some "_s);
    EXPECT_FALSE(isPreviewShown());
    EXPECT_FALSE(part<QWidget>(u"busyIndicator"_s)->isVisible());

    click(u"resolveBtn"_s);
    answer(1, u"Some"_s, u"Some name"_s);
    EXPECT_TRUE(isPreviewShown());
    EXPECT_EQ(part<QLabel>(u"previewName"_s)->text(), u"Some name"_s);
    EXPECT_EQ(part<QLabel>(u"previewHandle"_s)->text(), u"@Some"_s);
    click(u"addBtn"_s);
    EXPECT_EQ(status(), u"Added Some name!"_s);
    EXPECT_NEAR(statusColor().hslHue(), SystemColors::green.hslHue(), 2);
    click(u"addBtn"_s); // Nothing waits to be added any more.
    EXPECT_EQ(customRows(), QStringList{u"Some name  (@Some)"_s});
    EXPECT_TRUE(preferences.enabledChannelIDs().contains(u"custom_some"_s));

    type(u"SOME"_s);
    click(u"resolveBtn"_s);
    answer(2, u"SOME"_s, u"Again"_s);
    click(u"addBtn"_s);
    EXPECT_EQ(customRows(), QStringList{u"Some name  (@Some)"_s});
    click(u"Some"_s);
    EXPECT_EQ(customRows(), nothing);
    EXPECT_TRUE(preferences.customChannels().isEmpty());
}

TEST_F(SettingsWindowTest, TheLaterAnswerWinsAndAClosedWindowIsSafe) {
    selectTab(u"Add Channel"_s);
    type(u"first"_s);
    click(u"resolveBtn"_s);
    type(u"second"_s);
    QTest::keyClick(part<QLineEdit>(u"channelInput"_s), Qt::Key_Return);
    ASSERT_EQ(resolver.calls.size(), 2);
    EXPECT_TRUE(resolver.calls[0].stop.stop_requested());
    answer(1, u"second"_s, u"Second"_s);
    answer(0, u"first"_s, u"First"_s);
    EXPECT_EQ(part<QLabel>(u"previewName"_s)->text(), u"Second"_s);

    type(u"third"_s);
    click(u"resolveBtn"_s);
    window->close();
    answer(2, u"third"_s, u"Third"_s);
    window->show();
    EXPECT_EQ(part<QLabel>(u"previewName"_s)->text(), u"Third"_s);
    EXPECT_TRUE(isPreviewShown());

    click(u"resolveBtn"_s);
    window.reset();
    EXPECT_TRUE(resolver.calls.at(3).stop.stop_requested());
    answer(3, u"fourth"_s, u"Fourth"_s);
}

TEST_F(SettingsWindowTest, ForeignNamesAreTextOnOneLine) {
    const QList<std::pair<QString, QString>> names{
        {u"<b>Bold</b> & <img src=x>"_s, u"<b>Bold</b> & <img src=x>"_s},
        {u"two\nlines\u2028here"_s, u"two lines here"_s},
        {u"a\u202Eb\u200Fc"_s, u"abc"_s},
        {u"👨‍👩‍👧 family"_s, u"👨‍👩‍👧 family"_s},
        {u"قناة"_s, u"\u2068قناة\u2069"_s},
        {u"x"_s.repeated(10000), QString()},
    };
    const QSize size = window->size();
    for (int i = 0; const auto& [name, shown] : names)
        preferences.addCustomChannel(u"h%1"_s.arg(i++), name);
    selectTab(u"Add Channel"_s);
    type(u"x"_s);
    click(u"resolveBtn"_s);
    answer(0, u"x"_s, names.last().second);
    window->close();
    window->show();
    selectTab(u"Channels"_s);
    for (int i = 0; const auto& [name, shown] : names) {
        QString text = part<QCheckBox>(u"custom_h%1"_s.arg(i))->text();
        text.replace(u"&&"_s, u"&"_s);
        const QString row = customRows().at(i++);
        if (shown.isEmpty()) {
            EXPECT_TRUE(text.contains(u'…') && text.size() <= 80);
            EXPECT_TRUE(part<QCheckBox>(u"custom_h5"_s)->toolTip().startsWith(u"xxxxx"_s));
            EXPECT_TRUE(row.endsWith(u"(@h5)"_s));
        } else {
            EXPECT_EQ(text, shown);
            EXPECT_TRUE(row.startsWith(shown)) << row.toStdString();
        }
    }
    for (const QLabel* label : window->findChildren<QLabel*>())
        EXPECT_EQ(label->textFormat(), Qt::PlainText) << label->text().toStdString();
    EXPECT_EQ(window->size(), size);
}

TEST_F(SettingsWindowTest, NothingIsCutWhenTheFontChanges) {
    preferences.addCustomChannel(u"Mine"_s, u"My own"_s);
    const QFont before = QApplication::font();
    const QSize described = window->size();
    QFont other = before;
    for (const int points : {10, 16, 10}) {
        other.setPointSize(points);
        QApplication::setFont(other);
        test::settle();
        for (const char* title : {"General", "Channels", "Appearance", "Add Channel"}) {
            selectTab(QLatin1StringView(title));
            test::settle();
            const auto check = [&](const QWidget* shown, const QString& text, bool isWrapped) {
                if (!shown->isVisible())
                    return;
                EXPECT_TRUE(shown->parentWidget()->rect().contains(shown->geometry()))
                    << text.toStdString() << points;
                const QFontMetrics metrics = shown->fontMetrics();
                EXPECT_GE(shown->height(), metrics.ascent()) << text.toStdString() << points;
                EXPECT_GE(shown->width(), isWrapped ? 0 : metrics.horizontalAdvance(text))
                    << text.toStdString() << points;
            };
            for (const auto* button : window->findChildren<QPushButton*>())
                check(button, button->text(), false);
            for (const auto* box : window->findChildren<QCheckBox*>())
                check(box, box->text(), false);
            for (const auto* label : window->findChildren<QLabel*>())
                check(label, label->text(), label->wordWrap());
        }
        EXPECT_EQ(window->height() > described.height(), points == 16);
    }
    QApplication::setFont(before);
}

TEST_F(SettingsWindowTest, TabKeysActInPopUpsToo) {
    auto* tabs = part<QTabWidget>(u"tabView"_s);
    auto* popUp = part<QComboBox>(u"resolution"_s);
    window->activateWindow();
    popUp->setFocus();
    QTest::keyClick(popUp, Qt::Key_PageDown, Qt::ControlModifier);
    EXPECT_EQ(tabs->currentIndex(), 1);
    tabs->setCurrentIndex(0);
    popUp->showPopup();
    QTest::keyClick(popUp->view(), Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(tabs->currentIndex(), 3);
    EXPECT_FALSE(popUp->view()->isVisible());
    EXPECT_EQ(state.resolution(), Resolution::r480);
}

} // namespace
} // namespace orvane
