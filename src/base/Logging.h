// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLoggingCategory>
#include <QString>

namespace orvane {

/// What the program tells those who look for the cause of a fault, on the standard error. Quiet by
/// default; `--verbose` turns all of them on, QT_LOGGING_RULES each by its name. Texts that may
/// hold an address of a stream go through `withoutSecrets` first.
Q_DECLARE_LOGGING_CATEGORY(logApp)       // orvane.app
Q_DECLARE_LOGGING_CATEGORY(logDBus)      // orvane.dbus
Q_DECLARE_LOGGING_CATEGORY(logInstance)  // orvane.instance
Q_DECLARE_LOGGING_CATEGORY(logNetwork)   // orvane.network
Q_DECLARE_LOGGING_CATEGORY(logPlayer)    // orvane.player
Q_DECLARE_LOGGING_CATEGORY(logProcess)   // orvane.process
Q_DECLARE_LOGGING_CATEGORY(logSettings)  // orvane.settings
Q_DECLARE_LOGGING_CATEGORY(logStream)    // orvane.stream
Q_DECLARE_LOGGING_CATEGORY(logTelemetry) // orvane.telemetry
Q_DECLARE_LOGGING_CATEGORY(logUpdates)   // orvane.updates
Q_DECLARE_LOGGING_CATEGORY(logX11)       // orvane.x11
Q_DECLARE_LOGGING_CATEGORY(logYtDlp)     // orvane.ytdlp

/// Turns all of them on.
void enableVerboseLogging();

/// `text` with each web address cut to its scheme, host and path: what follows may be a token that
/// lets others play the stream, or tell who the user is.
[[nodiscard]] QString withoutSecrets(const QString& text);

} // namespace orvane
