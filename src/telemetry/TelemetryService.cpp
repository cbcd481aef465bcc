// SPDX-License-Identifier: GPL-3.0-or-later
#include "telemetry/TelemetryService.h"

#include "base/Logging.h"
#include "model/Channel.h"
#include "platform/system/HttpClient.h"
#include "settings/UserDefaults.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QUuid>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView appID{"5D2C8E41-7A93-4B6F-9E20-3C1A8F64B7D5"};
constexpr QLatin1StringView userIDKey{"lumenfold.orvane.telemetryUserID"};

/// Returns a new UUID in upper case, 36 characters.
QString randomID() {
    return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
}

} // namespace

TelemetryService::TelemetryService(UserDefaults& defaults, HttpClient& http,
                                   std::optional<Origin> endpoint)
    : m_defaults(defaults),
      m_http(http),
      m_endpoint(std::move(endpoint)),
      m_sessionID(randomID()) {}

void TelemetryService::appLaunched() {
    send(u"appLaunched"_s);
}

void TelemetryService::channelPlayed(const Channel& channel) {
    send(u"channelPlayed"_s,
         {{u"channelID"_s, channel.id()}, {u"channelName"_s, channel.nameEn()}});
}

void TelemetryService::settingsOpened() {
    send(u"settingsOpened"_s);
}

void TelemetryService::resolutionChanged(Resolution resolution) {
    send(u"resolutionChanged"_s, {{u"resolution"_s, rawValue(resolution)}});
}

void TelemetryService::send(const QString& signal, const QJsonObject& payload) {
    if (!m_endpoint)
        return;
    const QJsonObject object{{u"appID"_s, appID},
                             {u"clientUser"_s, hashedUser()},
                             {u"sessionID"_s, m_sessionID},
                             {u"type"_s, signal},
                             {u"payload"_s, payload}};
    const QByteArray body = QJsonDocument(QJsonArray{object}).toJson(QJsonDocument::Compact);
    qCInfo(logTelemetry).noquote() << "sending" << signal;
    // Deferred, so that sending does not delay the action that the signal reports.
    const QUrl address(m_endpoint->address(u"/v2/"));
    QMetaObject::invokeMethod(
        this, [this, address, body] { m_http.post(address, body, u"application/json"_s); },
        Qt::QueuedConnection);
}

const QString& TelemetryService::userID() {
    if (!m_userID) {
        m_userID = m_defaults.string(userIDKey);
        if (!m_userID) {
            m_userID = randomID();
            m_defaults.set(userIDKey, *m_userID);
        }
    }
    return *m_userID;
}

QString TelemetryService::hashedUser() {
    const QByteArray digest =
        QCryptographicHash::hash(userID().toUtf8(), QCryptographicHash::Sha256);
    return QString::fromLatin1(digest.toHex());
}

} // namespace orvane
