// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Origin.h"
#include "model/Resolution.h"

#include <QJsonObject>
#include <QObject>
#include <QString>

#include <optional>

namespace orvane {

class Channel;
class HttpClient;
class UserDefaults;

/// Sends telemetry signals under a pseudonym, each in a request of its own. Owned by the
/// composition root; main thread, which it never blocks. Failures are silent, and a request that is
/// under way when the program ends is lost.
class TelemetryService final : public QObject {
public:
    /// The first signal creates a random id for the installation and stores it in `defaults`.
    /// Without an endpoint, nothing is sent and no id is created. `defaults` and `http` outlive it.
    TelemetryService(UserDefaults& defaults, HttpClient& http, std::optional<Origin> endpoint);

    void appLaunched();
    void channelPlayed(const Channel& channel);
    void settingsOpened();
    void resolutionChanged(Resolution resolution);

private:
    void send(const QString& signal, const QJsonObject& payload = {});
    [[nodiscard]] const QString& userID();
    [[nodiscard]] QString hashedUser();

    UserDefaults& m_defaults;
    HttpClient& m_http;
    const std::optional<Origin> m_endpoint;
    const QString m_sessionID;
    /// Nullopt until the first signal.
    std::optional<QString> m_userID;
};

} // namespace orvane
