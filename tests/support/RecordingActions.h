// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/ApplicationActions.h"

#include <QStringList>

namespace orvane::test {

/// Records the calls.
class RecordingActions final : public ApplicationActions {
public:
    QStringList calls;

    void showPlayer() override { calls += QStringLiteral("show"); }
    void playChannel(const QString& id) override { calls += id; }
    void menuChannelSelected(const QString& id) override { calls += id; }
    void menuResolutionSelected(const QString& text) override { calls += text; }
    void menuSleepTimer(int minutes) override { calls += QString::number(minutes); }
    void menuCancelSleepTimer() override { calls += QStringLiteral("cancel"); }
    void menuOpenSettings() override { calls += QStringLiteral("settings"); }
    void menuAddChannel() override { calls += QStringLiteral("add"); }
    void menuShowAbout() override { calls += QStringLiteral("about"); }
    void menuToggleGhostMode() override { calls += QStringLiteral("ghost"); }
    void menuGoBack() override { calls += QStringLiteral("back"); }
    void menuGoLive() override { calls += QStringLiteral("live"); }
    void menuToggleSoundOnly() override { calls += QStringLiteral("sound"); }
    void menuCheckForUpdates() override { calls += QStringLiteral("updates"); }
    void terminate() override { calls += QStringLiteral("terminate"); }
};

} // namespace orvane::test
