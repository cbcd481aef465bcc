// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDesktopServices>
#include <QObject>
#include <QStringList>
#include <QUrl>

namespace orvane::test {

/// Receives the https addresses that the program opens during its lifetime.
class FakeBrowser final : public QObject {
    Q_OBJECT

public:
    FakeBrowser() { QDesktopServices::setUrlHandler(QStringLiteral("https"), this, "open"); }
    ~FakeBrowser() override { QDesktopServices::unsetUrlHandler(QStringLiteral("https")); }

    QStringList opened;

public Q_SLOTS:
    void open(const QUrl& address) { opened += address.toString(); }
};

} // namespace orvane::test
