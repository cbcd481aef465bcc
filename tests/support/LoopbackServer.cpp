// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/LoopbackServer.h"

#include <QHostAddress>
#include <QSslConfiguration>
#include <QSslServer>
#include <QTcpSocket>

namespace orvane::test {

using namespace Qt::StringLiterals;

namespace {

std::unique_ptr<QTcpServer> tlsServer(const QSslConfiguration& tls) {
    auto server = std::make_unique<QSslServer>();
    server->setSslConfiguration(tls);
    return server;
}

/// Returns nullopt until the request is complete.
std::optional<LoopbackServer::Request> parsed(const QByteArray& bytes) {
    const qsizetype end = bytes.indexOf("\r\n\r\n");
    if (end < 0)
        return std::nullopt;
    QList<QByteArray> lines = bytes.first(end).split('\n');
    const QList<QByteArray> first = lines.takeFirst().split(' ');
    LoopbackServer::Request request{.method = first.at(0),
                                    .path = QString::fromLatin1(first.at(1))};
    for (const QByteArray& line : lines) {
        const qsizetype colon = line.indexOf(':');
        request.headers.insert(line.first(colon).toLower(), line.sliced(colon + 1).trimmed());
    }
    request.body = bytes.sliced(end + 4);
    if (request.body.size() < request.headers.value("content-length").toLongLong())
        return std::nullopt;
    return request;
}

} // namespace

LoopbackServer::LoopbackServer() : LoopbackServer(std::make_unique<QTcpServer>(), u"http"_s) {}

LoopbackServer::LoopbackServer(const QSslConfiguration& tls)
    : LoopbackServer(tlsServer(tls), u"https"_s) {}

LoopbackServer::LoopbackServer(std::unique_ptr<QTcpServer> server, QString scheme)
    : m_server(std::move(server)), m_scheme(std::move(scheme)) {
    if (!m_server->listen(QHostAddress::LocalHost))
        qFatal("no port on loopback");
    QObject::connect(m_server.get(), &QTcpServer::pendingConnectionAvailable, [this] {
        QTcpSocket* socket = m_server->nextPendingConnection();
        QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] { serve(socket); });
    });
}

std::optional<Origin> LoopbackServer::origin() const {
    return Origin::parse(u"%1://127.0.0.1:%2"_s.arg(m_scheme).arg(m_server->serverPort()));
}

void LoopbackServer::serve(QTcpSocket* socket) {
    const std::optional<Request> request = parsed(socket->peek(64 * 1024));
    if (!request)
        return;
    socket->readAll();
    received += *request;
    requests += request->path + u' ' + QString::fromLatin1(request->headers.value("user-agent"));
    const Answer answer =
        answers.value(request->path, Answer{.status = 404, .body = "no such thing"});
    socket->write("HTTP/1.1 " + QByteArray::number(answer.status) + " Answer\r\nContent-Length: " +
                  QByteArray::number(answer.body.size()) + "\r\nConnection: close\r\n");
    if (!answer.location.isEmpty())
        socket->write("Location: " + answer.location + "\r\n");
    socket->write(answer.moreHeaders + "\r\n");
    socket->write(answer.cutAfter < 0 ? answer.body : answer.body.first(answer.cutAfter));
    if (answer.end == Answer::End::closed)
        socket->disconnectFromHost();
}

} // namespace orvane::test
