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

/// Why a transfer that has to be secure has failed.
enum class TransferError {
    insecure,    ///< The address, or one to which it leads, is not https.
    unreachable, ///< No connection, none that can be trusted, or silence.
    refused,     ///< Any status but 200.
    cut,         ///< It ended before the end that was announced.
    tooLong,     ///< There is more than was allowed.
    notTaken,    ///< Whoever receives could not take a piece.
    stopped,
};

/// What the end of a request says about the transfer; nothing when all is well. `status` is 0 when
/// there was no answer.
[[nodiscard]] std::optional<TransferError> transferError(QNetworkReply::NetworkError error,
                                                         int status);

/// Whether somebody has answered or refused a request that is finished. If not, the toolkit may
/// still be waiting for a name server, and would do so at the end of the program too.
[[nodiscard]] bool wasAnswered(const QNetworkReply& reply);

/// A small HTTP client. Main thread; nothing blocks it. Redirects are followed unless they lead
/// from https to http. `get` and `download` tell whatever goes wrong as nothing: those who use them
/// have no better answer to one fault than to another. `fetch` is for those who have.
class HttpClient {
public:
    /// `userAgent` is what servers are told of who asks.
    explicit HttpClient(QString userAgent);

    /// Without a sign of life from the server for this long, a transfer has failed.
    static constexpr std::chrono::milliseconds patience{60000};

    /// The body of an answer with status 200, at most 4 MiB.
    [[nodiscard]] QCoro::Task<std::optional<QByteArray>>
    get(QString address, std::chrono::milliseconds timeout, std::stop_token stop);

    /// Writes the body of an answer with status 200 into `path`, which is replaced, and gives its
    /// SHA-256 in lower-case hexadecimal digits. Nothing unless the body has the length that was
    /// announced; the file is then whatever it is.
    [[nodiscard]] QCoro::Task<std::optional<QByteArray>> download(QString address, QString path,
                                                                  std::stop_token stop);

    struct SecureRequest {
        QUrl address;
        /// Bytes of the body; one more ends the transfer.
        qint64 limit = 0;
        std::chrono::milliseconds timeout = patience;
    };
    /// Takes a piece of a body, and says whether it could. The next piece comes when it has ended.
    using Taker = std::function<QCoro::Task<bool>(QByteArray)>;
    using Fetched = std::expected<void, TransferError>;

    /// Hands the body over in pieces, as the server has sent it, without keeping more of it in
    /// memory than a piece. Only https, all the way. Nothing is taken of an answer whose status is
    /// not 200.
    [[nodiscard]] QCoro::Task<Fetched> fetch(SecureRequest request, Taker take,
                                             std::stop_token stop);

    /// Of its own type, as the comparisons of byte arrays stand in the way of awaiting them with an
    /// error.
    struct Body {
        QByteArray bytes;
    };

    /// The whole body at once.
    [[nodiscard]] QCoro::Task<std::expected<Body, TransferError>> fetchAll(SecureRequest request,
                                                                           std::stop_token stop);

    /// Whether the way out of the program may have to wait for a server; see `wasAnswered`.
    [[nodiscard]] bool hasUnansweredRequests() const { return m_unanswered > 0; }

private:
    [[nodiscard]] QNetworkRequest requestTo(const QUrl& address,
                                            std::chrono::milliseconds timeout) const;
    [[nodiscard]] QNetworkReply* send(const QString& address, std::chrono::milliseconds timeout);
    [[nodiscard]] QNetworkReply* sendSecurely(const SecureRequest& request);

    [[nodiscard]] QNetworkReply* send(const QNetworkRequest& request);

    QString m_userAgent;
    int m_unanswered = 0;
    QNetworkAccessManager m_network;
};

} // namespace orvane
