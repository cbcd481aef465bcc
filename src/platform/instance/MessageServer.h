// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/FileDescriptor.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QSocketNotifier>
#include <QTimer>

#include <chrono>
#include <functional>
#include <map>
#include <memory>

class QLocalSocket;

namespace orvane {

/// Serves other processes of this user on a local socket: reads one line from each and answers with
/// one. Owned by the single instance; lives on the main thread and needs its event loop. Drops
/// peers that send too much or nothing, or that disconnect before they are answered. While no file
/// may be opened they wait.
class MessageServer {
public:
    enum class Answer { done, refused };
    /// Acts on a message and returns whether it was understood. May destroy the server.
    using Handler = std::function<Answer(const QByteArray& message)>;

    /// Bytes, without the line break.
    static constexpr qsizetype longestMessage = qsizetype{64} * 1024;
    /// With the line break.
    [[nodiscard]] static QByteArrayView line(Answer answer);

    /// `listener` is a listening socket. A message that is not complete after `timeout` is dropped.
    MessageServer(FileDescriptor listener, Handler handler, std::chrono::milliseconds timeout);
    ~MessageServer();
    MessageServer(const MessageServer&) = delete;
    MessageServer& operator=(const MessageServer&) = delete;

private:
    class Peer;
    struct DropPeer {
        void operator()(Peer* peer) const;
    };

    void accept();
    void serve(int descriptor);
    void read(QLocalSocket* socket);
    void act(QLocalSocket* socket);
    void drop(QLocalSocket* socket);

    const Handler m_handler;
    const std::chrono::milliseconds m_timeout;
    FileDescriptor m_listener;
    QSocketNotifier m_arrival;
    QTimer m_retry;
    std::map<QLocalSocket*, std::unique_ptr<Peer, DropPeer>> m_peers;
};

} // namespace orvane
