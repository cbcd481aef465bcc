// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Origin.h"
#include "model/Resolution.h"

#include <QByteArray>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QObject>
#include <QString>
#include <QUrl>

#include <chrono>
#include <memory>
#include <optional>

namespace orvane {

class Channel;
class UserDefaults;

/// Tells a server which of a few things a person does, under a pseudonym: one request for each,
/// sent at once and forgotten. Owned by the composition root; main thread; nothing blocks it.
/// Whatever goes wrong leaves no trace. A request that is under way when the program ends is lost,
/// and must not be waited for: see `hasUnansweredRequests`.
class TelemetryService final : public QObject {
public:
    /// The defaults keep the random id of the installation, which is made with the first signal.
    /// Without an endpoint nothing is sent and no id is made.
    TelemetryService(UserDefaults& defaults, std::optional<Origin> endpoint);
    ~TelemetryService() override;

    void appLaunched();
    void channelPlayed(const Channel& channel);
    void settingsOpened();
    void resolutionChanged(Resolution resolution);

    /// Whether the way out of the program may have to wait for a server; see `wasAnswered`.
    [[nodiscard]] bool hasUnansweredRequests() const { return m_unanswered > 0; }

private:
    /// Without a sign of life from the server for this long, a request is given up.
    static constexpr std::chrono::milliseconds patience{60000};

    void send(const QString& signal, const QJsonObject& payload = {});
    void post(const QUrl& address, const QByteArray& body);
    [[nodiscard]] const QString& userID();
    [[nodiscard]] QString hashedUser();

    UserDefaults& m_defaults;
    const std::optional<Origin> m_endpoint;
    const QString m_sessionID;
    /// Empty until the first signal.
    std::optional<QString> m_userID;
    int m_unanswered = 0;
    /// Made for the first request, as it is not for nothing.
    std::unique_ptr<QNetworkAccessManager> m_network;
};

} // namespace orvane
