// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/FileDescriptor.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QSocketNotifier>

#include <chrono>
#include <functional>
#include <map>
#include <memory>

namespace orvane {

/// Hears other processes of this user on a local socket: one line from each, and one in answer.
/// Owned by the single instance; the main thread and its event loop. Peers that send nonsense, too
/// much or nothing, or that go before they are heard, are dropped, and cost neither time nor memory
/// worth the name.
class MessageServer {
public:
    enum class Answer { done, refused };
    /// Acts on a message and says whether it was understood. It may end the server's life.
    using Handler = std::function<Answer(const QByteArray& message)>;

    /// Bytes, without the end of the line.
    static constexpr qsizetype longestMessage = qsizetype{64} * 1024;
    /// With the end of the line.
    [[nodiscard]] static QByteArrayView line(Answer answer);

    /// `listener` is a socket that listens and never blocks. A message that is not whole after
    /// `patience` is dropped.
    MessageServer(FileDescriptor listener, Handler handler, std::chrono::milliseconds patience);
    ~MessageServer();
    MessageServer(const MessageServer&) = delete;
    MessageServer& operator=(const MessageServer&) = delete;

private:
    class Peer;
    struct DropPeer {
        void operator()(Peer* peer) const;
    };

    void accept();
    void read(int key);
    void act(int key);
    void drop(int key);

    const FileDescriptor m_listener;
    const Handler m_handler;
    const std::chrono::milliseconds m_patience;
    QSocketNotifier m_acceptor;
    /// By the descriptors of their sockets.
    std::map<int, std::unique_ptr<Peer, DropPeer>> m_peers;
};

} // namespace orvane
