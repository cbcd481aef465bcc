// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/SleepWatcher.h"

#include "base/Logging.h"
#include "platform/bus/MessageBus.h"

namespace orvane {

using namespace Qt::StringLiterals;

SleepWatcher::SleepWatcher(MessageBus& systemBus) {
    connect(&systemBus, &MessageBus::connected, this, [this](QDBusConnection bus) {
        bus.connect(u"org.freedesktop.login1"_s, u"/org/freedesktop/login1"_s,
                    u"org.freedesktop.login1.Manager"_s, u"PrepareForSleep"_s, this,
                    SLOT(prepareForSleep(bool)));
    });
}

void SleepWatcher::prepareForSleep(bool begins) {
    qCInfo(logDBus) << (begins ? "the machine suspends" : "the machine has resumed");
    if (!begins)
        Q_EMIT wokeUp();
}

} // namespace orvane
