// SPDX-License-Identifier: GPL-3.0-or-later
#include "updates/UpdateDownload.h"

#include <QCoroFuture>
#include <QtConcurrentRun>

namespace orvane {

using namespace Qt::StringLiterals;

std::optional<DownloadFault> refusal(const AppcastItem& item) {
    if (item.archive.scheme() != "https"_L1)
        return TransferError::insecure;
    if (item.length > maximumUpdate)
        return DownloadError::tooLarge;
    return std::nullopt;
}

UpdateDownload::UpdateDownload(HttpClient& http, AppcastItem item, UpdateKey key,
                               const QString& folder, Progress progress)
    : m_http(http),
      m_item(std::move(item)),
      m_key(std::move(key)),
      m_progress(std::move(progress)),
      m_file(std::make_shared<UpdateFile>(folder, safeFileName(m_item.archive))) {}

QCoro::Task<std::expected<QString, DownloadFault>> UpdateDownload::run(std::stop_token stop) {
    if (const auto refused = refusal(m_item))
        co_return std::unexpected(*refused);
    const std::stop_callback onStop(stop, [this] { m_file->discard(); });
    Step step = co_await open(stop);
    if (step)
        step = co_await receive(stop);
    if (step)
        step = co_await verify(stop);
    if (!step)
        co_return std::unexpected(step.error());
    const QFuture<std::optional<QString>> finishing =
        QtConcurrent::run([file = m_file] { return file->finish(); });
    const std::optional<QString> path = co_await finishing;
    if (stop.stop_requested())
        co_return std::unexpected(TransferError::stopped);
    if (!path)
        co_return std::unexpected(DownloadError::folder);
    m_file->keep();
    co_return std::expected<QString, DownloadFault>(*path);
}

QCoro::Task<UpdateDownload::Step> UpdateDownload::open(std::stop_token stop) {
    const QFuture<bool> opening = QtConcurrent::run([file = m_file] { return file->open(); });
    const bool isOpen = co_await opening;
    if (stop.stop_requested())
        co_return std::unexpected(TransferError::stopped);
    if (!isOpen)
        co_return std::unexpected(DownloadError::folder);
    co_return Step();
}

QCoro::Task<UpdateDownload::Step> UpdateDownload::receive(std::stop_token stop) {
    const HttpClient::SecureRequest request{.address = m_item.archive, .limit = m_item.length};
    const HttpClient::Taker taker = [this, stop](QByteArray chunk) {
        return write(std::move(chunk), stop);
    };
    const HttpClient::Fetched fetched = co_await m_http.fetch(request, taker, stop);
    if (!fetched)
        co_return std::unexpected(fetched.error());
    if (m_received < m_item.length)
        co_return std::unexpected(DownloadError::tooShort);
    co_return Step();
}

QCoro::Task<bool> UpdateDownload::write(QByteArray chunk, std::stop_token stop) {
    const QFuture<bool> writing =
        QtConcurrent::run([file = m_file, chunk] { return file->append(chunk); });
    const bool isWritten = co_await writing;
    m_received += chunk.size();
    if (isWritten && !stop.stop_requested())
        m_progress(m_received);
    co_return isWritten;
}

QCoro::Task<UpdateDownload::Step> UpdateDownload::verify(std::stop_token stop) {
    const QFuture<bool> verifying =
        QtConcurrent::run([file = m_file, key = m_key, signature = m_item.signature] {
            return file->isSigned(key, signature);
        });
    const bool isSigned = co_await verifying;
    if (stop.stop_requested())
        co_return std::unexpected(TransferError::stopped);
    if (!isSigned)
        co_return std::unexpected(DownloadError::badSignature);
    co_return Step();
}

} // namespace orvane
