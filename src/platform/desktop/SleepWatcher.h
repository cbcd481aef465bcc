// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

namespace orvane {

class MessageBus;

/// Reports that the machine has resumed after a suspend, as announced by logind. Owned by
/// `DesktopIntegration`; main thread. Silent without logind.
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
