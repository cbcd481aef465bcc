// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/NotificationCenter.h"
#include "settings/Preferences.h"
#include "settings/UserDefaults.h"
#include "state/AppState.h"
#include "state/ChannelRegistry.h"

#include <QTemporaryDir>

namespace orvane::test {

/// The stored and the live state on fresh preferences in a temporary folder: all that most views
/// need.
struct StateFixture {
    QTemporaryDir folder;
    UserDefaults defaults{folder.filePath(QStringLiteral("preferences.json"))};
    Preferences preferences{defaults};
    NotificationCenter notifications;
    ChannelRegistry registry{preferences};
    AppState state{preferences, notifications};
};

} // namespace orvane::test
