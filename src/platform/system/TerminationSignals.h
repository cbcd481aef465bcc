// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QSocketNotifier>

namespace orvane {

/// Turns SIGTERM, SIGINT and SIGHUP into a Qt signal on the main thread, so that a program ended
/// from outside takes the same way out as one that is quit. At most one lives at a time, owned by
/// the composition root; its destructor gives the signals their usual meaning back.
class TerminationSignals final : public QObject {
    Q_OBJECT

public:
    explicit TerminationSignals(QObject* parent = nullptr);
    ~TerminationSignals() override;

Q_SIGNALS:
    void received();

private:
    QSocketNotifier m_notifier;
};

} // namespace orvane
