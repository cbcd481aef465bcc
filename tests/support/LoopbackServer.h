// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Origin.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <QTcpServer>

#include <memory>

class QSslConfiguration;

namespace orvane::test {

/// A web server on loopback with fixed answers, and 404 for other paths.
class LoopbackServer {
public:
    struct Answer {
        int status = 200;
        QByteArray body;
        /// Number of bytes of the body to send; negative for all.
        qsizetype cutAfter = -1;
        /// The target of a redirect.
        QByteArray location;
        /// Whether the connection is closed afterwards.
        enum class End { closed, hanging } end = End::closed;
        /// Complete lines with their line breaks.
        QByteArray moreHeaders;
    };
    struct Request {
        QByteArray method;
        QString path;
        /// Keys are in lower case.
        QHash<QByteArray, QByteArray> headers;
        QByteArray body;
    };

    LoopbackServer();
    /// Serves https with the certificate and the key of the configuration.
    explicit LoopbackServer(const QSslConfiguration& tls);

    QHash<QString, Answer> answers;
    /// Path and user agent of each request.
    QStringList requests;
    /// The same requests in full.
    QList<Request> received;

    [[nodiscard]] std::optional<Origin> origin() const;

private:
    LoopbackServer(std::unique_ptr<QTcpServer> server, QString scheme);
    void serve(QTcpSocket* socket);

    const std::unique_ptr<QTcpServer> m_server;
    const QString m_scheme;
};

} // namespace orvane::test
