// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLoggingCategory>
#include <QString>

namespace orvane {

/// Logging categories for diagnosing faults, written to standard error. Off by default; `--verbose`
/// turns all of them on, QT_LOGGING_RULES selects some by name. Texts that may contain the address
/// of a stream must go through `withoutSecrets` first. Any thread.
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

/// Turns all categories on.
void enableVerboseLogging();

/// Returns `text` with each URL reduced to its scheme, host and path. The rest may contain a token
/// that lets others play the stream, or identify the user; so may the end of a long path, which is
/// cut off too. Runs in linear time.
[[nodiscard]] QString withoutSecrets(const QString& text);

} // namespace orvane
