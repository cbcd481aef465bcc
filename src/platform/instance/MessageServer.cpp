// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/instance/MessageServer.h"

#include "base/Logging.h"

#include <QLocalSocket>

#include <sys/socket.h>

#include <cerrno>
#include <cstring>

namespace orvane {

namespace {

/// Further ones wait in the queues of the server and the kernel.
constexpr std::size_t mostPeers = 32;
/// Until another attempt to accept a peer that could not be.
constexpr std::chrono::seconds retryTime{1};

} // namespace

/// A connection and the time it has left.
class MessageServer::Peer final : public QObject {
public:
    explicit Peer(QLocalSocket* connected) : socket(connected) {
        socket->setParent(this); // It outlives the server where the handler destroys that.
        limit.setSingleShot(true);
    }

    QLocalSocket* const socket;
    QTimer limit;
};

void MessageServer::DropPeer::operator()(Peer* peer) const {
    peer->limit.stop();
    peer->socket->disconnect(peer);
    peer->socket->abort();
    // Later, as this may be called by one of its signals.
    peer->deleteLater();
}

QByteArrayView MessageServer::line(Answer answer) {
    return answer == Answer::done ? "done\n" : "refused\n";
}

MessageServer::MessageServer(FileDescriptor listener, Handler handler,
                             std::chrono::milliseconds timeout)
    : m_handler(std::move(handler)),
      m_timeout(timeout),
      m_listener(std::move(listener)),
      m_arrival(m_listener.get(), QSocketNotifier::Read) {
    m_retry.setSingleShot(true);
    QObject::connect(&m_arrival, &QSocketNotifier::activated, &m_arrival, [this] { accept(); });
    QObject::connect(&m_retry, &QTimer::timeout, &m_retry, [this] { accept(); });
}

MessageServer::~MessageServer() = default;

void MessageServer::accept() {
    // QLocalServer would stop listening for good when no file may be opened.
    int error = 0;
    while (m_peers.size() < mostPeers && error == 0) {
        const int descriptor =
            ::accept4(m_listener.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
        if (descriptor >= 0)
            serve(descriptor);
        else
            error = errno;
    }
    const bool isOutOfFiles = error == EMFILE || error == ENFILE || error == ENOMEM;
    if (isOutOfFiles) {
        qCWarning(logInstance, "another start has to wait: %s", std::strerror(error));
        m_retry.start(retryTime);
    }
    // It would report those who wait again and again.
    m_arrival.setEnabled(!isOutOfFiles && m_peers.size() < mostPeers);
}

void MessageServer::serve(int descriptor) {
    auto* socket = new QLocalSocket;
    // One byte more than needed, so that there is always room to notice the disconnection.
    socket->setReadBufferSize(longestMessage + 2);
    auto* peer = new Peer(socket);
    m_peers[socket].reset(peer);
    QObject::connect(socket, &QLocalSocket::readyRead, peer, [this, socket] { read(socket); });
    QObject::connect(socket, &QLocalSocket::disconnected, peer, [this, socket] { drop(socket); });
    QObject::connect(&peer->limit, &QTimer::timeout, peer, [this, socket] { drop(socket); });
    peer->limit.start(m_timeout);
    socket->setSocketDescriptor(descriptor);
}

void MessageServer::read(QLocalSocket* socket) {
    const qsizetype end = socket->peek(longestMessage + 1).indexOf('\n');
    if (end < 0 && socket->bytesAvailable() > longestMessage)
        return drop(socket);
    if (end < 0)
        return;
    // A peer that has disconnected has reported a failure, so its message must have no effect.
    socket->waitForReadyRead(0);
    if (m_peers.contains(socket))
        act(socket);
}

void MessageServer::act(QLocalSocket* socket) {
    // Taken out first: the handler may destroy this server, but this peer still gets its answer.
    const auto node = m_peers.extract(socket);
    if (!m_retry.isActive())
        m_arrival.setEnabled(true);
    const Handler handler = m_handler;
    QByteArray message = socket->readLine();
    message.chop(1);
    const Answer answer = handler(message);
    qCInfo(logInstance) << "another start sent" << message.size() << "bytes:" << line(answer);
    socket->write(line(answer).toByteArray());
    socket->flush();
}

void MessageServer::drop(QLocalSocket* socket) {
    m_peers.erase(socket);
    accept();
}

} // namespace orvane
