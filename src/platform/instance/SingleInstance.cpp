// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/instance/SingleInstance.h"

#include "base/Logging.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QLocalSocket>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <cstring>
#include <thread>

namespace orvane {

namespace {

constexpr std::chrono::milliseconds retryTime{5};
/// The sticky bit tells cleaners of old temporary files to leave the file alone.
constexpr mode_t fileMode = S_IRUSR | S_IWUSR | S_ISVTX;

/// The result of one attempt to deliver a message.
enum class Delivery { done, refused, nobodyThere, noAnswer };

sockaddr_un socketAddress(const QString& path) {
    const QByteArray encoded = QFile::encodeName(path);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    // The terminating zero is there already: `instanceAddress` has checked the length.
    std::memcpy(address.sun_path, encoded.constData(), static_cast<std::size_t>(encoded.size()));
    return address;
}

Delivery deliver(const QString& path, const QByteArray& message, QDeadlineTimer deadline) {
    const auto rest = [&] { return static_cast<int>(deadline.remainingTime()); };
    QLocalSocket socket;
    socket.connectToServer(path);
    if (!socket.waitForConnected(rest()))
        return Delivery::nobodyThere;
    socket.write(message + '\n');
    while (!socket.canReadLine()) {
        if (!socket.waitForReadyRead(rest()))
            return socket.state() == QLocalSocket::ConnectedState ? Delivery::noAnswer
                                                                  : Delivery::nobodyThere;
    }
    return socket.readLine() == MessageServer::line(MessageServer::Answer::done)
               ? Delivery::done
               : Delivery::refused;
}

} // namespace

SingleInstance::Claim SingleInstance::claim(const InstanceAddress& address,
                                            const QByteArray& message,
                                            std::chrono::milliseconds timeout) {
    if (message.size() > MessageServer::longestMessage)
        return Failure::tooLong;
    FileDescriptor lock(::open(QFile::encodeName(address.lockPath).constData(),
                               O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!lock.isOpen())
        return Failure::noLock;
    const QDeadlineTimer deadline(timeout);
    while (::flock(lock.get(), LOCK_EX | LOCK_NB) != 0) {
        const Delivery delivery = deliver(address.socketPath, message, deadline);
        if (delivery == Delivery::done) {
            qCInfo(logInstance) << "handed over to the running copy";
            return Delivered{};
        }
        if (delivery == Delivery::refused)
            return Failure::refused;
        if (deadline.hasExpired())
            return Failure::noAnswer;
        // The other one has just got the lock, or is about to release it.
        std::this_thread::sleep_for(retryTime);
    }
    ::fchmod(lock.get(), fileMode);
    std::unique_ptr<SingleInstance> instance(new SingleInstance(std::move(lock), address));
    if (!instance->listen())
        return Failure::noSocket;
    qCInfo(logInstance) << "the only copy at" << address.socketPath;
    return instance;
}

SingleInstance::SingleInstance(FileDescriptor lock, InstanceAddress address)
    : m_lock(std::move(lock)), m_address(std::move(address)) {}

SingleInstance::~SingleInstance() {
    close();
}

bool SingleInstance::listen() {
    const QByteArray path = QFile::encodeName(m_address.socketPath);
    ::unlink(path.constData()); // Left by a crash.
    m_listener = FileDescriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    const sockaddr_un address = socketAddress(m_address.socketPath);
    return ::bind(m_listener.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) ==
               0 &&
           ::chmod(path.constData(), fileMode) == 0 && ::listen(m_listener.get(), SOMAXCONN) == 0;
}

void SingleInstance::serve(MessageServer::Handler handler, std::chrono::milliseconds timeout) {
    m_server = std::make_unique<MessageServer>(std::move(m_listener), std::move(handler), timeout);
}

void SingleInstance::close() {
    ::unlink(QFile::encodeName(m_address.socketPath).constData());
    m_server.reset();
    m_listener.reset();
}

} // namespace orvane
