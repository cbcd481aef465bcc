// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

namespace orvane {

class MessageBus;

/// Tells when the machine has woken up after a suspend, as the system's login manager says. Owned
/// by whoever integrates the program into the desktop; main thread. Without such a manager it stays
/// silent.
class SleepWatcher final : public QObject {
    Q_OBJECT

public:
    explicit SleepWatcher(MessageBus& systemBus);

Q_SIGNALS:
    void wokeUp();

private:
    Q_SLOT void prepareForSleep(bool begins);
};

} // namespace orvane
