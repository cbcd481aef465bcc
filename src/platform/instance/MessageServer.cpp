// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/instance/MessageServer.h"

#include <QTimer>

#include <sys/socket.h>

#include <array>
#include <cerrno>

namespace orvane {

namespace {

/// More wait in the kernel's queue, where they cost this program nothing.
constexpr std::size_t mostPeers = 32;

} // namespace

/// One of the others, with what it has said so far.
class MessageServer::Peer final : public QObject {
public:
    explicit Peer(FileDescriptor connected)
        : socket(std::move(connected)), notifier(socket.get(), QSocketNotifier::Read) {
        limit.setSingleShot(true);
    }

    enum class State { sending, gone };

    /// Takes what has come, but no more of it than a message may have.
    State receive() {
        std::array<char, 4096> bytes{};
        while (received.size() <= longestMessage) {
            const ssize_t count = ::recv(socket.get(), bytes.data(), bytes.size(), 0);
            if (count < 0 && errno == EINTR)
                continue;
            if (count <= 0)
                return count < 0 && errno == EAGAIN ? State::sending : State::gone;
            received.append(bytes.data(), count);
        }
        return State::sending;
    }

    FileDescriptor socket;
    QByteArray received;
    QSocketNotifier notifier;
    QTimer limit;
};

void MessageServer::DropPeer::operator()(Peer* peer) const {
    peer->notifier.setEnabled(false);
    peer->limit.stop();
    peer->socket.reset();
    // Later, since it may be its own notifier that is being heard.
    peer->deleteLater();
}

QByteArrayView MessageServer::line(Answer answer) {
    return answer == Answer::done ? "done\n" : "refused\n";
}

MessageServer::MessageServer(FileDescriptor listener, Handler handler,
                             std::chrono::milliseconds patience)
    : m_listener(std::move(listener)),
      m_handler(std::move(handler)),
      m_patience(patience),
      m_acceptor(m_listener.get(), QSocketNotifier::Read) {
    QObject::connect(&m_acceptor, &QSocketNotifier::activated, &m_acceptor, [this] { accept(); });
}

MessageServer::~MessageServer() = default;

void MessageServer::accept() {
    FileDescriptor socket(
        ::accept4(m_listener.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    if (!socket.isOpen())
        return;
    const int key = socket.get();
    auto* peer = new Peer(std::move(socket));
    m_peers[key].reset(peer);
    QObject::connect(&peer->notifier, &QSocketNotifier::activated, peer,
                     [this, key] { read(key); });
    QObject::connect(&peer->limit, &QTimer::timeout, peer, [this, key] { drop(key); });
    peer->limit.start(m_patience);
    m_acceptor.setEnabled(m_peers.size() < mostPeers);
}

void MessageServer::read(int key) {
    const auto& peer = m_peers.at(key);
    const Peer::State state = peer->receive();
    const qsizetype end = peer->received.indexOf('\n');
    const qsizetype length = end < 0 ? peer->received.size() : end;
    // Who has gone has told its person that it failed, so it must not succeed now.
    if (state == Peer::State::gone || length > longestMessage)
        drop(key);
    else if (end >= 0)
        act(key);
}

void MessageServer::act(int key) {
    // Taken out first: the handler may end this server, but this peer is still to be answered.
    const Handler handler = m_handler;
    const FileDescriptor socket = std::move(m_peers.at(key)->socket);
    const QByteArray& received = m_peers.at(key)->received;
    const QByteArray message = received.first(received.indexOf('\n'));
    drop(key);
    const QByteArrayView answer = line(handler(message));
    // A line as short as this always finds room in a new socket.
    ::send(socket.get(), answer.data(), static_cast<std::size_t>(answer.size()), MSG_NOSIGNAL);
}

void MessageServer::drop(int key) {
    m_peers.erase(key);
    m_acceptor.setEnabled(true);
}

} // namespace orvane
