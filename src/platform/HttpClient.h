// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QCoroTask>
#include <QNetworkAccessManager>
#include <QString>

#include <chrono>
#include <optional>
#include <stop_token>

namespace orvane {

/// A small HTTP client. Main thread; nothing blocks it. Redirects are followed unless they lead
/// from https to http. Whatever goes wrong is told as nothing: those who use it have no better
/// answer to one fault than to another.
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

private:
    [[nodiscard]] QNetworkReply* send(const QString& address, std::chrono::milliseconds timeout);

    QString m_userAgent;
    QNetworkAccessManager m_network;
};

} // namespace orvane
