// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/system/HttpClient.h"

#include "base/Logging.h"

#include <QCoroFuture>
#include <QCryptographicHash>
#include <QFile>
#include <QNetworkRequest>
#include <QObject>
#include <QPromise>

#include <memory>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 maximumBody = 4 * 1024 * 1024;
constexpr int statusOk = 200;
/// Of a body that is delivered in chunks.
constexpr qint64 largestChunk = 1024 * 1024;

int statusOf(const QNetworkReply& reply) {
    return reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

bool isComplete(const QNetworkReply& reply, qint64 received) {
    const QVariant length = reply.header(QNetworkRequest::ContentLengthHeader);
    return reply.error() == QNetworkReply::NoError && statusOf(reply) == statusOk &&
           (!length.isValid() || length.toLongLong() == received);
}

/// Passes each chunk of the body to `take` until the end, an abort or a stop. Aborts when `take`
/// returns false.
QCoro::Task<> receive(QNetworkReply& reply, std::function<bool(const QByteArray&)> take,
                      std::stop_token stop) {
    QPromise<void> promise;
    promise.start();
    const auto takeAll = [&reply, &take] {
        if (reply.bytesAvailable() > 0 && !take(reply.readAll()))
            reply.abort();
    };
    QObject::connect(&reply, &QNetworkReply::readyRead, &reply, takeAll);
    QObject::connect(&reply, &QNetworkReply::finished, &reply, [&promise] { promise.finish(); });
    const std::stop_callback onStop(stop, [&reply] { reply.abort(); });
    const QFuture<void> finished = promise.future();
    co_await finished;
    takeAll();
}

/// Waits until there is something to read or the reply has finished.
QCoro::Task<> arrival(QNetworkReply& reply) {
    if (reply.bytesAvailable() > 0 || reply.isFinished())
        co_return;
    QPromise<void> promise;
    promise.start();
    const QObject untilArrival;
    const auto arrive = [&promise] { promise.finish(); };
    QObject::connect(&reply, &QNetworkReply::readyRead, &untilArrival, arrive);
    QObject::connect(&reply, &QNetworkReply::finished, &untilArrival, arrive);
    const QFuture<void> arrived = promise.future();
    co_await arrived;
}

} // namespace

std::optional<TransferError> transferError(QNetworkReply::NetworkError error, int status) {
    if (error == QNetworkReply::InsecureRedirectError)
        return TransferError::insecure;
    if (status != 0 && status != statusOk)
        return TransferError::refused;
    if (error == QNetworkReply::NoError && status == statusOk)
        return std::nullopt;
    return status == statusOk ? TransferError::cut : TransferError::unreachable;
}

bool wasAnswered(const QNetworkReply& reply) {
    return reply.error() != QNetworkReply::OperationCanceledError || statusOf(reply) != 0;
}

HttpClient::HttpClient(QString userAgent) : m_userAgent(std::move(userAgent)) {}

QNetworkRequest HttpClient::requestTo(const QUrl& address,
                                      std::chrono::milliseconds timeout) const {
    QNetworkRequest request{address};
    request.setHeader(QNetworkRequest::UserAgentHeader, m_userAgent);
    request.setTransferTimeout(static_cast<int>(timeout.count()));
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::NoLessSafeRedirectPolicy);
    return request;
}

QNetworkReply* HttpClient::send(const QString& address, std::chrono::milliseconds timeout) {
    return send(requestTo(QUrl(address), timeout));
}

QNetworkReply* HttpClient::send(const QNetworkRequest& request) {
    QNetworkReply* reply = m_network.get(request);
    track(reply);
    return reply;
}

void HttpClient::track(QNetworkReply* reply) {
    ++m_unanswered;
    QObject::connect(reply, &QNetworkReply::finished, &m_network, [this, reply] {
        if (wasAnswered(*reply))
            --m_unanswered;
        if (reply->error() != QNetworkReply::NoError)
            qCWarning(logNetwork).noquote() << withoutSecrets(reply->url().toString())
                                            << "failed:" << withoutSecrets(reply->errorString());
    });
}

void HttpClient::post(const QUrl& address, const QByteArray& body, const QString& contentType) {
    QNetworkRequest request(address);
    request.setHeader(QNetworkRequest::ContentTypeHeader, contentType);
    request.setTransferTimeout(static_cast<int>(defaultTimeout.count()));
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::ManualRedirectPolicy);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    QNetworkReply* reply = m_network.post(request, body);
    track(reply);
    QObject::connect(reply, &QNetworkReply::finished, reply, &QObject::deleteLater);
    // The head of the answer says that the request has arrived. The rest may be of any length.
    QObject::connect(reply, &QNetworkReply::metaDataChanged, reply, &QNetworkReply::abort,
                     Qt::QueuedConnection);
}

QNetworkReply* HttpClient::sendSecurely(const SecureRequest& secure) {
    QNetworkRequest request = requestTo(secure.address, secure.timeout);
    // Lengths and signatures refer to the file on the server, not to a compressed transfer.
    request.setRawHeader("Accept-Encoding", "identity");
    // Over HTTP/2, Qt keeps receiving beyond the limit of the read buffer.
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    QNetworkReply* reply = send(request);
    reply->setReadBufferSize(largestChunk);
    return reply;
}

QCoro::Task<std::optional<QByteArray>>
HttpClient::get(QString address, std::chrono::milliseconds timeout, std::stop_token stop) {
    const std::unique_ptr<QNetworkReply> reply(send(address, timeout));
    QByteArray body;
    const auto take = [&body](const QByteArray& chunk) {
        body += chunk;
        return body.size() <= maximumBody;
    };
    co_await receive(*reply, take, stop);
    if (!isComplete(*reply, body.size()))
        co_return std::nullopt;
    co_return std::optional(body);
}

QCoro::Task<std::optional<QByteArray>> HttpClient::download(QString address, QString path,
                                                            std::stop_token stop) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        co_return std::nullopt;
    const std::unique_ptr<QNetworkReply> reply(send(address, defaultTimeout));
    QCryptographicHash hash(QCryptographicHash::Sha256);
    qint64 received = 0;
    const auto take = [&](const QByteArray& chunk) {
        hash.addData(chunk);
        received += chunk.size();
        return file.write(chunk) == chunk.size();
    };
    co_await receive(*reply, take, stop);
    if (!isComplete(*reply, received) || !file.flush())
        co_return std::nullopt;
    co_return std::optional(hash.result().toHex());
}

QCoro::Task<HttpClient::Fetched> HttpClient::fetch(SecureRequest request, Taker take,
                                                   std::stop_token stop) {
    if (request.address.scheme() != "https"_L1)
        co_return std::unexpected(TransferError::insecure);
    const std::unique_ptr<QNetworkReply> reply(sendSecurely(request));
    const std::stop_callback onStop(stop, [&reply] { reply->abort(); });
    qint64 received = 0;
    while (true) {
        co_await arrival(*reply);
        if (stop.stop_requested())
            co_return std::unexpected(TransferError::stopped);
        if (statusOf(*reply) != statusOk)
            break;
        const QByteArray chunk = reply->readAll();
        if (chunk.isEmpty() && reply->isFinished())
            break;
        received += chunk.size();
        if (received > request.limit)
            co_return std::unexpected(TransferError::tooLong);
        const bool isTaken = co_await take(chunk);
        if (stop.stop_requested())
            co_return std::unexpected(TransferError::stopped);
        if (!isTaken)
            co_return std::unexpected(TransferError::notTaken);
    }
    if (const auto error = transferError(reply->error(), statusOf(*reply)))
        co_return std::unexpected(*error);
    if (!isComplete(*reply, received))
        co_return std::unexpected(TransferError::cut);
    co_return Fetched();
}

QCoro::Task<std::expected<HttpClient::Body, TransferError>>
HttpClient::fetchAll(SecureRequest request, std::stop_token stop) {
    Body body;
    const Taker take = [&body](QByteArray chunk) -> QCoro::Task<bool> {
        body.bytes += chunk;
        co_return true;
    };
    const Fetched fetched = co_await fetch(request, take, stop);
    if (!fetched)
        co_return std::unexpected(fetched.error());
    co_return std::expected<Body, TransferError>(body);
}

} // namespace orvane
