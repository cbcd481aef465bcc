// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QSocketNotifier>

namespace orvane {

/// Turns SIGTERM, SIGINT and SIGHUP into a Qt signal on the main thread, so that the program shuts
/// down as on "Quit". At most one instance at a time, owned by the composition root; the destructor
/// restores the default actions.
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
