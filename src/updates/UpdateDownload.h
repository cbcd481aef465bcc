// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/system/HttpClient.h"
#include "updates/Appcast.h"
#include "updates/UpdateFile.h"
#include "updates/UpdateSignature.h"

#include <QCoroTask>
#include <QString>

#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <variant>

namespace orvane {

enum class DownloadError {
    tooLarge,     ///< More is announced than any update has.
    folder,       ///< Nothing can be put into the folder.
    tooShort,     ///< The server has less than was announced.
    badSignature, ///< The bytes are not those that were signed.
};

using DownloadFault = std::variant<DownloadError, TransferError>;

/// No version is as large as that by far; more would be a mistake, or would fill somebody's disk.
inline constexpr qint64 maximumUpdate = 1'000'000'000;

/// Why an update is not even asked for.
[[nodiscard]] std::optional<DownloadFault> refusal(const AppcastItem& item);

/// One download of an update: receives the file, checks that it is signed, and only then gives it
/// its name. Lives in the frame of the coroutine that awaits `run`. Main thread; disk and signature
/// are the work of other threads. Whatever goes wrong, and when `stop` is requested at once, the
/// file is gone.
class UpdateDownload {
public:
    /// Hears of each piece how many bytes there are now.
    using Progress = std::function<void(qint64 received)>;

    UpdateDownload(HttpClient& http, AppcastItem item, UpdateKey key, const QString& folder,
                   Progress progress);

    /// The path of the file.
    [[nodiscard]] QCoro::Task<std::expected<QString, DownloadFault>> run(std::stop_token stop);

private:
    using Step = std::expected<void, DownloadFault>;

    [[nodiscard]] QCoro::Task<Step> open(std::stop_token stop);
    [[nodiscard]] QCoro::Task<Step> receive(std::stop_token stop);
    [[nodiscard]] QCoro::Task<bool> take(QByteArray piece, std::stop_token stop);
    [[nodiscard]] QCoro::Task<Step> verify(std::stop_token stop);

    HttpClient& m_http;
    const AppcastItem m_item;
    const UpdateKey m_key;
    const Progress m_progress;
    const std::shared_ptr<UpdateFile> m_file;
    qint64 m_received = 0;
};

} // namespace orvane
