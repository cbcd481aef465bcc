// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/Logging.h"

#include <QRegularExpression>

namespace orvane {

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(logApp, "orvane.app", QtCriticalMsg)
Q_LOGGING_CATEGORY(logDBus, "orvane.dbus", QtCriticalMsg)
Q_LOGGING_CATEGORY(logInstance, "orvane.instance", QtCriticalMsg)
Q_LOGGING_CATEGORY(logNetwork, "orvane.network", QtCriticalMsg)
Q_LOGGING_CATEGORY(logPlayer, "orvane.player", QtCriticalMsg)
Q_LOGGING_CATEGORY(logProcess, "orvane.process", QtCriticalMsg)
Q_LOGGING_CATEGORY(logSettings, "orvane.settings", QtCriticalMsg)
Q_LOGGING_CATEGORY(logStream, "orvane.stream", QtCriticalMsg)
Q_LOGGING_CATEGORY(logTelemetry, "orvane.telemetry", QtCriticalMsg)
Q_LOGGING_CATEGORY(logUpdates, "orvane.updates", QtCriticalMsg)
Q_LOGGING_CATEGORY(logX11, "orvane.x11", QtCriticalMsg)
Q_LOGGING_CATEGORY(logYtDlp, "orvane.ytdlp", QtCriticalMsg)

void enableVerboseLogging() {
    QLoggingCategory::setFilterRules(u"orvane.*=true"_s);
}

QString withoutSecrets(const QString& text) {
    // The parts after the scheme are optional or bounded, so each URL is scanned only a few times.
    static const QRegularExpression url(
        uR"(([a-z][a-z0-9+.-]{0,15}://))"  // scheme
        uR"((?:[^\s/?#"'<>]*@)?)"          // user name and password
        uR"(((?:\[[^\s/?#"'<>@\[\]]*\])?)" // IPv6 host
        uR"([^\s?#"'<>()\[\]]{0,80}))"     // other host and path
        uR"((?:[^\s"'<>]*(?<![)\]]))?)"_s, // the rest, without closing brackets
        QRegularExpression::CaseInsensitiveOption);
    QString result = text;
    return result.replace(url, u"\\1\\2"_s);
}

} // namespace orvane
