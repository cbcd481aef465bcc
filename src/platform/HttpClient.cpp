// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/HttpClient.h"

#include <QCoroFuture>
#include <QCryptographicHash>
#include <QFile>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QPromise>
#include <QUrl>

#include <functional>
#include <memory>

namespace orvane {

namespace {

constexpr qint64 maximumBody = 4 * 1024 * 1024;
constexpr int statusOk = 200;

bool isComplete(const QNetworkReply& reply, qint64 received) {
    const QVariant length = reply.header(QNetworkRequest::ContentLengthHeader);
    return reply.error() == QNetworkReply::NoError &&
           reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt() == statusOk &&
           (!length.isValid() || length.toLongLong() == received);
}

/// Hands every piece of the body over as it comes, until the end, an abort or a stop. A piece that
/// `take` refuses aborts.
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

} // namespace

HttpClient::HttpClient(QString userAgent) : m_userAgent(std::move(userAgent)) {}

QNetworkReply* HttpClient::send(const QString& address, std::chrono::milliseconds timeout) {
    QNetworkRequest request{QUrl(address)};
    request.setHeader(QNetworkRequest::UserAgentHeader, m_userAgent);
    request.setTransferTimeout(static_cast<int>(timeout.count()));
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::NoLessSafeRedirectPolicy);
    return m_network.get(request);
}

QCoro::Task<std::optional<QByteArray>>
HttpClient::get(QString address, std::chrono::milliseconds timeout, std::stop_token stop) {
    const std::unique_ptr<QNetworkReply> reply(send(address, timeout));
    QByteArray body;
    const auto take = [&body](const QByteArray& piece) {
        body += piece;
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
    const std::unique_ptr<QNetworkReply> reply(send(address, patience));
    QCryptographicHash hash(QCryptographicHash::Sha256);
    qint64 received = 0;
    const auto take = [&](const QByteArray& piece) {
        hash.addData(piece);
        received += piece.size();
        return file.write(piece) == piece.size();
    };
    co_await receive(*reply, take, stop);
    if (!isComplete(*reply, received) || !file.flush())
        co_return std::nullopt;
    co_return std::optional(hash.result().toHex());
}

} // namespace orvane
