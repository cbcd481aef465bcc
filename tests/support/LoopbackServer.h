// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Environment.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>
#include <QTcpServer>

namespace orvane::test {

/// A web server on loopback with fixed answers; what it does not know is answered with 404.
class LoopbackServer {
public:
    struct Answer {
        int status = 200;
        QByteArray body;
        /// The connection is cut after this many bytes of the body; negative for never.
        qsizetype cutAfter = -1;
    };

    LoopbackServer();

    QHash<QString, Answer> answers;
    /// Path and user agent of each request.
    QStringList requests;

    [[nodiscard]] std::optional<Origin> origin() const;

private:
    void serve(QTcpSocket* socket);

    QTcpServer m_server;
};

} // namespace orvane::test
