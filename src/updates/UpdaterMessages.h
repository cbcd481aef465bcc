// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "updates/Appcast.h"
#include "updates/UpdateDownload.h"
#include "updates/UpdaterWindow.h"

#include <QString>

#include <variant>

/// The texts of the updater. Any thread.
namespace orvane::UpdaterMessages {

using SearchFault = std::variant<TransferError, AppcastError>;

[[nodiscard]] UpdaterMessage notForThisBuild();
[[nodiscard]] UpdaterMessage searching();
[[nodiscard]] UpdaterMessage searchFailed(const SearchFault& fault);
[[nodiscard]] UpdaterMessage upToDate(const QString& version);
[[nodiscard]] UpdaterMessage offer(const AppcastItem& item, const QString& version);
[[nodiscard]] UpdaterMessage downloading(const AppcastItem& item);
[[nodiscard]] UpdaterMessage downloadFailed(const AppcastItem& item, const DownloadFault& fault);
[[nodiscard]] UpdaterMessage downloaded(const AppcastItem& item, const QString& path);

/// Returns "3.1 MB of 48.0 MB", or the next step when all is received.
[[nodiscard]] QString progress(qint64 received, qint64 length);

} // namespace orvane::UpdaterMessages
