// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QCoroTask>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QString>
#include <QUrl>

#include <chrono>
#include <expected>
#include <functional>
#include <optional>
#include <stop_token>

namespace orvane {

/// Why a transfer over https has failed.
enum class TransferError {
    insecure,    ///< The address, or a redirect, is not https.
    unreachable, ///< No connection, a certificate that is not trusted, or a timeout.
    refused,     ///< Any status but 200.
    cut,         ///< The body is shorter than its announced length.
    tooLong,     ///< The body is longer than the limit.
    notTaken,    ///< The receiver could not process a chunk.
    stopped,
};

/// Translates the result of a request; nullopt for success. `status` is 0 when there was no
/// response.
[[nodiscard]] std::optional<TransferError> transferError(QNetworkReply::NetworkError error,
                                                         int status);

/// Whether a server has answered or refused a finished request. If not, Qt may still be waiting for
/// a name server, also when the program exits.
[[nodiscard]] bool wasAnswered(const QNetworkReply& reply);

/// A small HTTP client. Main thread, which it never blocks. Follows redirects unless they lead from
/// https to http. `get` and `download` return nullopt on any error, for callers that treat all
/// errors alike; `fetch` tells them apart.
class HttpClient {
public:
    /// `userAgent` is sent with each request.
    explicit HttpClient(QString userAgent);

    /// A transfer fails when the server sends nothing for this long.
    static constexpr std::chrono::milliseconds defaultTimeout{60000};

    /// Returns the body of a response with status 200, at most 4 MiB.
    [[nodiscard]] QCoro::Task<std::optional<QByteArray>>
    get(QString address, std::chrono::milliseconds timeout, std::stop_token stop);

    /// Writes the body of a response with status 200 to `path`, which is overwritten, and returns
    /// its SHA-256 in lower-case hexadecimal digits. Returns nullopt unless the body has its
    /// announced length; the contents of the file are then unspecified.
    [[nodiscard]] QCoro::Task<std::optional<QByteArray>> download(QString address, QString path,
                                                                  std::stop_token stop);

    struct SecureRequest {
        QUrl address;
        /// Maximum size of the body in bytes; a longer one aborts the transfer.
        qint64 limit = 0;
        std::chrono::milliseconds timeout = defaultTimeout;
    };
    /// Processes a chunk of a body and returns whether it could. The next chunk is delivered when
    /// it has returned.
    using Taker = std::function<QCoro::Task<bool>(QByteArray)>;
    using Fetched = std::expected<void, TransferError>;

    /// Delivers the body in chunks as the server sends it; at most one chunk is in memory. Only
    /// https, redirects included. `take` is not called unless the status is 200.
    [[nodiscard]] QCoro::Task<Fetched> fetch(SecureRequest request, Taker take,
                                             std::stop_token stop);

    /// A type of its own, because a std::expected of a QByteArray is ambiguous to compare, which
    /// awaiting it needs.
    struct Body {
        QByteArray bytes;
    };

    /// Returns the whole body.
    [[nodiscard]] QCoro::Task<std::expected<Body, TransferError>> fetchAll(SecureRequest request,
                                                                           std::stop_token stop);

    /// Sends `body` and returns at once. The answer is not awaited, and not read beyond its head;
    /// redirects are not followed, and cookies neither sent nor kept. Failures are ignored.
    void post(const QUrl& address, const QByteArray& body, const QString& contentType);

    /// Whether the exit of the program may have to wait for a server; see `wasAnswered`.
    [[nodiscard]] bool hasUnansweredRequests() const { return m_unanswered > 0; }

private:
    [[nodiscard]] QNetworkRequest requestTo(const QUrl& address,
                                            std::chrono::milliseconds timeout) const;
    [[nodiscard]] QNetworkReply* send(const QString& address, std::chrono::milliseconds timeout);
    [[nodiscard]] QNetworkReply* sendSecurely(const SecureRequest& request);

    [[nodiscard]] QNetworkReply* send(const QNetworkRequest& request);
    /// Counts `reply` as unanswered until it is not.
    void track(QNetworkReply* reply);

    QString m_userAgent;
    int m_unanswered = 0;
    QNetworkAccessManager m_network;
};

} // namespace orvane
