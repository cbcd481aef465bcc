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

/// A web server on loopback with fixed answers; what it does not know is answered with 404.
class LoopbackServer {
public:
    struct Answer {
        int status = 200;
        QByteArray body;
        /// The connection is cut after this many bytes of the body; negative for never.
        qsizetype cutAfter = -1;
        /// Where a redirection leads.
        QByteArray location;
        /// What becomes of the connection after that.
        enum class End { closed, hanging } end = End::closed;
        /// Whole lines, each with its end.
        QByteArray moreHeaders;
    };
    struct Request {
        QByteArray method;
        QString path;
        /// By their names in lower case.
        QHash<QByteArray, QByteArray> headers;
        QByteArray body;
    };

    LoopbackServer();
    /// Speaks https, with the certificate and the key of the configuration.
    explicit LoopbackServer(const QSslConfiguration& tls);

    QHash<QString, Answer> answers;
    /// Path and user agent of each request.
    QStringList requests;
    /// The same requests, with all that was in them.
    QList<Request> received;

    [[nodiscard]] std::optional<Origin> origin() const;

private:
    LoopbackServer(std::unique_ptr<QTcpServer> server, QString scheme);
    void serve(QTcpSocket* socket);

    const std::unique_ptr<QTcpServer> m_server;
    const QString m_scheme;
};

} // namespace orvane::test
