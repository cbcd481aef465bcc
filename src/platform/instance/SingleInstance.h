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

/// The right to be the only running copy of the program at an address; what copies have an address
/// in common is for the caller to decide. The right is a lock that the kernel holds, so it goes
/// with the process, however that ends, and children do not inherit it; the others send one line
/// each and wait for the answer. Claimed and owned by `main`, before there is an application
/// object; served on the main thread.
class SingleInstance {
public:
    /// The running copy has acted on the message.
    struct Delivered {};
    enum class Failure {
        noLock,   ///< The lock file cannot be opened.
        noSocket, ///< The socket cannot be made.
        tooLong,  ///< The message is longer than the server reads.
        refused,  ///< The running copy did not understand the message.
        noAnswer, ///< There is a running copy, but it did nothing in time.
    };
    using Claim = std::variant<std::unique_ptr<SingleInstance>, Delivered, Failure>;

    /// Becomes the running copy, or has it act on `message`, which has no line breaks. Where that
    /// one ends before it has answered, the claim begins anew, so that a message is acted on by
    /// somebody. Waits up to `patience` for others, without an event loop.
    [[nodiscard]] static Claim claim(const InstanceAddress& address, const QByteArray& message,
                                     std::chrono::milliseconds patience);

    ~SingleInstance();
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    /// Begins to hear the others on the event loop, those included that have come since the claim.
    /// The handler may call `close`.
    void serve(MessageServer::Handler handler, std::chrono::milliseconds patience);

    /// Hears nobody any more: who has had no answer claims the address once this process has ended.
    void close();

private:
    SingleInstance(FileDescriptor lock, InstanceAddress address);
    [[nodiscard]] bool listen();

    const FileDescriptor m_lock;
    const InstanceAddress m_address;
    /// Until it is served.
    FileDescriptor m_listener;
    std::unique_ptr<MessageServer> m_server;
};

} // namespace orvane
