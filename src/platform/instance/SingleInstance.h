// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/FileDescriptor.h"
#include "platform/instance/InstanceAddress.h"
#include "platform/instance/MessageServer.h"

#include <QByteArray>

#include <chrono>
#include <memory>
#include <variant>

namespace orvane {

/// The right to be the only running copy of the program at an address; the caller decides which
/// copies share an address. The right is an flock, which the kernel releases when the process ends
/// for any reason and which children do not inherit. Other starts send one line each and wait for
/// the answer. Claimed and owned by `main` before there is an application object; served on the
/// main thread. The socket is opened without QLocalServer, which can only listen once there is an
/// event loop: starts in between would not find it.
class SingleInstance {
public:
    /// The running copy has acted on the message.
    struct Delivered {};
    enum class Failure {
        noLock,   ///< The lock file cannot be opened.
        noSocket, ///< The socket cannot be created.
        tooLong,  ///< The message is longer than the server reads.
        refused,  ///< The running copy did not understand the message.
        noAnswer, ///< There is a running copy, but it did not answer in time.
    };
    using Claim = std::variant<std::unique_ptr<SingleInstance>, Delivered, Failure>;

    /// Becomes the running copy, or has the running copy act on `message`, which has no line
    /// breaks. If that copy ends before it has answered, the claim starts over, so that no message
    /// is lost. Blocks for up to `timeout`; needs no event loop.
    [[nodiscard]] static Claim claim(const InstanceAddress& address, const QByteArray& message,
                                     std::chrono::milliseconds timeout);

    ~SingleInstance();
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    /// Starts to serve other starts on the event loop, including those that have been waiting since
    /// the claim. The handler may call `close`.
    void serve(MessageServer::Handler handler, std::chrono::milliseconds timeout);

    /// Stops serving. A start that has not been answered claims the address once this process has
    /// ended.
    void close();

private:
    SingleInstance(FileDescriptor lock, InstanceAddress address);
    [[nodiscard]] bool listen();

    const FileDescriptor m_lock;
    const InstanceAddress m_address;
    /// Open until `serve`.
    FileDescriptor m_listener;
    std::unique_ptr<MessageServer> m_server;
};

} // namespace orvane
