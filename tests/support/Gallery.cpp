// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/Gallery.h"

#include "language/DirectedMenu.h"
#include "language/Translation.h"

#include "base/TaskScope.h"
#include "state/AppNotification.h"
#include "streaming/StreamError.h"
#include "streaming/tool/YtDlpUpdates.h"
#include "support/EventLoop.h"
#include "support/RecordingActions.h"
#include "support/RecordingPlayer.h"
#include "support/StateFixture.h"
#include "ui/AboutWindow.h"
#include "ui/UpdaterDialog.h"
#include "ui/menus/ContextMenuBuilder.h"
#include "ui/menus/MenuRenderer.h"
#include "ui/menus/StatusMenuBuilder.h"
#include "ui/player/PlayerContainerView.h"
#include "ui/settings/SettingsWindow.h"
#include "ui/window/GhostKeysQuestion.h"
#include "updates/UpdaterMessages.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFile>
#include <QLineEdit>
#include <QMenu>
#include <QTabWidget>

namespace orvane::test {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Answers at once.
class PromptUpdates final : public YtDlpUpdates {
public:
    std::vector<YtDlpUpdateOutcome::Value> outcomes;

    QCoro::Task<std::optional<YtDlpStatus>> status() override {
        co_return std::optional(YtDlpStatus{.program = u"/usr/bin/yt-dlp"_s,
                                            .version = u"2026.10.26"_s,
                                            .released = QDate::currentDate().addDays(-29),
                                            .newer = u"2026.11.20"_s});
    }
    QCoro::Task<YtDlpUpdateOutcome::Value> update(std::function<void(QString)>) override {
        YtDlpUpdateOutcome::Value outcome = outcomes.front();
        outcomes.erase(outcomes.begin());
        co_return outcome;
    }
};

QCoro::Task<ChannelResolver::Result> resolve(QString input, std::stop_token) {
    ChannelResolver::Result result = ChannelResolver::ResolvedChannel{u"Some_1"_s, u"Some name"_s};
    if (input == u"@none")
        result = std::unexpected(ChannelResolver::ResolveError{
            translated("Settings", "Channel not found. Check the handle or URL.")});
    co_return result;
}

class Visit : StateFixture {
public:
    explicit Visit(const Look& look) : m_look(look) {
        preferences.setShortcutsInTextFields(true);
        preferences.setFavoriteChannelIDs({u"alarabiya"_s, u"dwnews"_s});
    }

    void settings() {
        const QString noFolder = folder.filePath(u"a file"_s);
        if (!QFile(noFolder).open(QIODevice::WriteOnly))
            return;
        SettingsWindow window(
            {.preferences = preferences,
             .registry = registry,
             .state = state,
             .notifications = notifications,
             .tasks = tasks,
             .resolve = resolve,
             .siteHost = u"site.example"_s,
             .autostart = Autostart(
                 {.folder = noFolder, .identifier = u"x"_s, .name = u"x"_s, .executable = u"x"_s}),
             .ytDlp = updates,
             .resizePlayer = [](QSizeF) {}});
        window.show();
        const auto click = [&](const QString& name) {
            window.findChild<QAbstractButton*>(name)->click();
        };
        general(window, click);
        auto* tabs = window.findChild<QTabWidget*>();
        tabs->setCurrentIndex(1);
        show(u"settings-channels"_s, window);
        tabs->setCurrentIndex(2);
        click(u"preset480"_s);
        show(u"settings-appearance"_s, window);
        addChannel(window, click);
        window.close();
    }

    void about() {
        AboutWindow window(u"https://orvane.example"_s);
        window.show();
        show(u"about"_s, window);
    }

    void ghostQuestion() {
        GhostKeysQuestion question([](bool) {});
        question.show();
        show(u"ghost-question"_s, question);
    }

    void updater() {
        using namespace UpdaterMessages;
        const AppcastItem item{.version = u"2.3.0"_s, .shownVersion = u"2.3.0"_s};
        const QString version = u"2.2.0"_s;
        UpdaterDialog dialog;
        const auto see = [&](const QString& name) {
            settle();
            for (QWidget* window : QApplication::topLevelWidgets()) {
                if (qobject_cast<QDialog*>(window) != nullptr && window->isVisible())
                    show(name, *window);
            }
        };
        dialog.showSearch(searching());
        see(u"update-search"_s);
        dialog.showMessage(upToDate(version));
        see(u"update-none"_s);
        dialog.showMessage(notForThisBuild());
        see(u"update-system"_s);
        int number = 0;
        for (const auto error : {AppcastError::notXml, AppcastError::notAFeed}) {
            dialog.showMessage(searchFailed(error));
            see(u"update-fault-%1"_s.arg(++number));
        }
        for (const auto error : {TransferError::insecure, TransferError::unreachable,
                                 TransferError::refused, TransferError::cut, TransferError::tooLong,
                                 TransferError::notTaken, TransferError::stopped}) {
            dialog.showMessage(searchFailed(error));
            see(u"update-fault-%1"_s.arg(++number));
        }
        for (const auto error : {DownloadError::tooLarge, DownloadError::folder,
                                 DownloadError::tooShort, DownloadError::badSignature}) {
            dialog.showMessage(downloadFailed(item, error));
            see(u"update-fault-%1"_s.arg(++number));
        }
        dialog.showOffer(offer(item, version), u"7.1\n– 2.0"_s);
        see(u"update-offer"_s);
        dialog.showProgress(downloading(item));
        dialog.setProgress(0.3, progress(3'100'000, 48'000'000));
        see(u"update-progress"_s);
        dialog.setProgress(1, progress(48'000'000, 48'000'000));
        see(u"update-verifying"_s);
        dialog.showMessage(downloaded(item, u"/home/me/Downloads/orvane_2.3.0_amd64.deb"_s));
        see(u"update-done"_s);
        dialog.close();
        settle();
    }

    void player() {
        RecordingPlayer player;
        RecordingActions actions;
        PlayerContainerView view(state, player, actions, notifications, VideoOutput::software);
        view.setGeometry(300, 200, 480, 314);
        view.show();
        show(u"player-empty"_s, view);
        const Channel channel = registry.featured().at(1);
        state.assignCurrentChannel(channel);
        state.setLoading(channel);
        show(u"player-loading"_s, view);
        view.setInstalling(true);
        show(u"player-installing"_s, view);
        view.setInstalling(false);
        state.setGhostMode(true);
        state.setMuted(true);
        failures(view);
        notifications.post(AppNotification::streamResolved, channel);
        show(u"player-playing"_s, view);
        state.setLivePosition({.behind = 40s, .canGoBack = true});
        show(u"player-behind"_s, view);
        view.resize(320, 224);
        state.assignCurrentChannel(registry.channel(u"livenowfox"_s));
        show(u"player-small"_s, view);
        state.setGhostMode(false);
        state.setMuted(false);
    }

    void menus() {
        RecordingActions actions;
        std::optional<int> timer;
        const MenuSources sources{.registry = registry,
                                  .preferences = preferences,
                                  .state = state,
                                  .sleepTimerMinutes = [&] { return timer; }};
        const auto see = [&](const QString& name, const Menu& menu) {
            DirectedMenu target;
            renderMenu(menu, actions, target);
            target.popup({300, 10});
            show(name, target);
            int number = 0;
            for (QAction* action : target.actions()) {
                if (action->menu() == nullptr)
                    continue;
                action->menu()->popup({300, 10});
                show(u"%1-%2"_s.arg(name).arg(++number), *action->menu());
            }
        };
        state.assignCurrentChannel(registry.channel(u"dwnews"_s));
        see(u"menu-tray"_s, StatusMenuBuilder::build(sources));
        state.setGhostMode(true);
        timer = 30;
        state.setSleepTimerRemaining(130);
        see(u"menu-tray-ghost"_s, StatusMenuBuilder::build(sources));
        see(u"menu-context"_s, ContextMenuBuilder::build(sources, StatusItemPresence::absent));
    }

private:
    using Click = std::function<void(const QString&)>;

    void show(const QString& name, QWidget& window) {
        settle();
        m_look(name, window);
    }

    void general(SettingsWindow& window, const Click& click) {
        show(u"settings-general"_s, window);
        click(u"startAtLogin"_s);
        updates.outcomes = {
            YtDlpUpdateOutcome::Updated{.from = u"2026.10.26"_s, .to = u"2026.11.20"_s},
            YtDlpUpdateOutcome::UpToDate{u"2026.11.20"_s}};
        click(u"updateYtDlp"_s);
        show(u"settings-general-updated"_s, window);
        click(u"updateYtDlp"_s);
        show(u"settings-general-newest"_s, window);
    }

    void addChannel(SettingsWindow& window, const Click& click) {
        window.showCustomChannelsTab();
        auto* input = window.findChild<QLineEdit*>();
        show(u"settings-add"_s, window);
        click(u"resolveBtn"_s);
        show(u"settings-add-empty"_s, window);
        input->setText(u"@none"_s);
        click(u"resolveBtn"_s);
        notifications.post(AppNotification::textFieldLostKey);
        show(u"settings-add-failed"_s, window);
        input->setText(u"@Some_1"_s);
        click(u"resolveBtn"_s);
        show(u"settings-add-preview"_s, window);
        click(u"addBtn"_s);
        show(u"settings-add-added"_s, window);
    }

    void failures(PlayerContainerView& view) {
        const QString words = u"ERROR: [site] abc: "_s;
        int number = 0;
        for (const QString& said :
             {words + u"not currently live"_s, words + u"not a bot"_s, words + u"private video"_s,
              words + u"timed out"_s, words + u"po token"_s, u"Stream stalled"_s,
              u"No picture arrived"_s, u"Stream ended"_s,
              words + u"unable to open https://site.example/live/one (a reason, in brackets), "_s +
                  u"nor https://site.example/live/two, which is as long"_s}) {
            notifications.post(
                AppNotification::streamError,
                said.startsWith(u"E") ? errorDescription(StreamError::ResolveFailed{said}) : said);
            notifications.post(AppNotification::retryCountdown,
                               std::optional(number % 2 == 0 ? 5s : 115s));
            show(u"player-error-%1"_s.arg(++number), view);
        }
    }

    const Look& m_look;
    TaskScope tasks;
    PromptUpdates updates;
};

} // namespace

void visitWindows(const Look& look) {
    Visit visit(look);
    visit.settings();
    visit.about();
    visit.ghostQuestion();
    visit.updater();
    visit.player();
    visit.menus();
}

} // namespace orvane::test
