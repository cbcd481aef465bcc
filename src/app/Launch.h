// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/commands/Verb.h"
#include "platform/instance/SingleInstance.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <memory>
#include <variant>

namespace orvane {

class AppDelegate;

/// Decides what a start of the program does: print something, pass the verbs on to the running
/// copy, or become that copy. Needs no application object, display or bus. Used by `main`.
namespace Launch {

struct Exit {
    int code = 0;
};
struct Start {
    /// Null if no folder for the lock is usable; the program then runs without one.
    std::unique_ptr<SingleInstance> instance;
    QList<Verb::Value> verbs;
    /// The name of Qt's platform plugin.
    QString platform;
};
using Outcome = std::variant<Exit, Start>;

/// Prints all messages. One copy runs for each user, X display and preferences file, so a user who
/// is logged in on two displays has two. Waits up to 10 seconds for another copy.
[[nodiscard]] Outcome prepare(const QStringList& arguments, const QString& preferencesPath);

/// Passes the verbs of other starts to `delegate` until it terminates. Both arguments live until
/// the event loop has ended.
void serve(SingleInstance& instance, AppDelegate& delegate);

} // namespace Launch

} // namespace orvane
