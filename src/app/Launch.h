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

/// What a start of the program comes to before there is an application object, a display or a bus:
/// it prints something, or has the copy that runs do what was asked, or is to become that copy.
/// Used by `main` alone.
namespace Launch {

struct Exit {
    int code = 0;
};
struct Start {
    /// Null where the machine has no place for a lock; the program then runs without one.
    std::unique_ptr<SingleInstance> instance;
    QList<Verb::Value> verbs;
    /// The toolkit's platform.
    QString platform;
};
using Outcome = std::variant<Exit, Start>;

/// Prints what there is to say. One copy runs for each user, X display and preferences file: two
/// logins of a person on two displays each have their own. Waits for another copy up to 10 seconds.
[[nodiscard]] Outcome prepare(const QStringList& arguments, const QString& preferencesPath);

/// Has `delegate` do what other starts ask for, until it begins to end. Both outlive the other's
/// event loop.
void serve(SingleInstance& instance, AppDelegate& delegate);

} // namespace Launch

} // namespace orvane
