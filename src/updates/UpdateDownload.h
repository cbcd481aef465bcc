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
    tooLarge,     ///< The announced length exceeds `maximumUpdate`.
    folder,       ///< The folder cannot be written to.
    tooShort,     ///< The file is shorter than announced.
    badSignature, ///< The signature does not match the file.
};

using DownloadFault = std::variant<DownloadError, TransferError>;

/// Bytes. Far above the size of any version; protects the user's disk.
inline constexpr qint64 maximumUpdate = 1'000'000'000;

/// Returns why an update must not be downloaded; nullopt if it may be.
[[nodiscard]] std::optional<DownloadFault> refusal(const AppcastItem& item);

/// One download of an update: receives the file, verifies its signature, and only then gives it its
/// final name. Lives in the frame of the coroutine that awaits `run`. Main thread; writing and
/// verifying run on worker threads. On any error the file is deleted, and at once when `stop` is
/// requested.
class UpdateDownload {
public:
    /// Called after each chunk with the number of bytes so far.
    using Progress = std::function<void(qint64 received)>;

    UpdateDownload(HttpClient& http, AppcastItem item, UpdateKey key, const QString& folder,
                   Progress progress);

    /// Returns the path of the file.
    [[nodiscard]] QCoro::Task<std::expected<QString, DownloadFault>> run(std::stop_token stop);

private:
    using Step = std::expected<void, DownloadFault>;

    [[nodiscard]] QCoro::Task<Step> open(std::stop_token stop);
    [[nodiscard]] QCoro::Task<Step> receive(std::stop_token stop);
    [[nodiscard]] QCoro::Task<bool> write(QByteArray chunk, std::stop_token stop);
    [[nodiscard]] QCoro::Task<Step> verify(std::stop_token stop);

    HttpClient& m_http;
    const AppcastItem m_item;
    const UpdateKey m_key;
    const Progress m_progress;
    const std::shared_ptr<UpdateFile> m_file;
    qint64 m_received = 0;
};

} // namespace orvane
