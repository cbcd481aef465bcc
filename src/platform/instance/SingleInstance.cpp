// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/instance/SingleInstance.h"

#include <QDeadlineTimer>
#include <QFile>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/un.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <thread>

namespace orvane {

namespace {

constexpr std::chrono::milliseconds retryTime{5};
/// Keeps what cleans up old temporary files away.
constexpr mode_t fileMode = S_IRUSR | S_IWUSR | S_ISVTX;

/// What became of one attempt to deliver a message.
enum class Delivery { done, refused, nobodyThere, noAnswer };

sockaddr_un socketAddress(const QString& path) {
    const QByteArray encoded = QFile::encodeName(path);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    // The zero at the end is there already: the address was checked to be short enough.
    std::memcpy(address.sun_path, encoded.constData(), static_cast<std::size_t>(encoded.size()));
    return address;
}

template <class Call>
int onAddress(Call call, const FileDescriptor& socket, const QString& path) {
    const sockaddr_un address = socketAddress(path);
    return call(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address);
}

void limitWaiting(const FileDescriptor& socket, std::chrono::milliseconds time) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time);
    const timeval limit{.tv_sec = seconds.count(),
                        .tv_usec = std::chrono::microseconds(time - seconds).count()};
    ::setsockopt(socket.get(), SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
    ::setsockopt(socket.get(), SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
}

bool sendAll(const FileDescriptor& socket, QByteArrayView bytes) {
    while (!bytes.isEmpty()) {
        const ssize_t sent = ::send(socket.get(), bytes.data(),
                                    static_cast<std::size_t>(bytes.size()), MSG_NOSIGNAL);
        if (sent < 0 && errno == EINTR)
            continue;
        if (sent <= 0)
            return false;
        bytes = bytes.sliced(sent);
    }
    return true;
}

/// Reads up to the end of a line.
Delivery readAnswer(const FileDescriptor& socket) {
    QByteArray answer;
    std::array<char, 16> bytes{};
    while (!answer.endsWith('\n')) {
        const ssize_t count = ::recv(socket.get(), bytes.data(), bytes.size(), 0);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0 && errno == EAGAIN)
            return Delivery::noAnswer;
        if (count <= 0)
            return Delivery::nobodyThere;
        answer.append(bytes.data(), count);
    }
    return answer == MessageServer::line(MessageServer::Answer::done) ? Delivery::done
                                                                      : Delivery::refused;
}

Delivery deliver(const QString& path, const QByteArray& message, std::chrono::milliseconds time) {
    const FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    limitWaiting(socket, time);
    if (onAddress(::connect, socket, path) != 0 || !sendAll(socket, message + '\n'))
        return Delivery::nobodyThere;
    return readAnswer(socket);
}

} // namespace

SingleInstance::Claim SingleInstance::claim(const InstanceAddress& address,
                                            const QByteArray& message,
                                            std::chrono::milliseconds patience) {
    if (message.size() > MessageServer::longestMessage)
        return Failure::tooLong;
    FileDescriptor lock(::open(QFile::encodeName(address.lockPath).constData(),
                               O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!lock.isOpen())
        return Failure::noLock;
    const QDeadlineTimer deadline(patience);
    while (::flock(lock.get(), LOCK_EX | LOCK_NB) != 0) {
        // At least a moment: no time at all would mean to wait for ever.
        const auto rest = std::max(std::chrono::milliseconds(deadline.remainingTime()), retryTime);
        const Delivery delivery = deliver(address.socketPath, message, rest);
        if (delivery == Delivery::done)
            return Delivered{};
        if (delivery == Delivery::refused)
            return Failure::refused;
        if (deadline.hasExpired())
            return Failure::noAnswer;
        // It has only just got the lock, or is about to give it back.
        std::this_thread::sleep_for(retryTime);
    }
    ::fchmod(lock.get(), fileMode);
    std::unique_ptr<SingleInstance> instance(new SingleInstance(std::move(lock), address));
    if (!instance->listen())
        return Failure::noSocket;
    return instance;
}

SingleInstance::SingleInstance(FileDescriptor lock, InstanceAddress address)
    : m_lock(std::move(lock)), m_address(std::move(address)) {}

SingleInstance::~SingleInstance() {
    close();
}

bool SingleInstance::listen() {
    const QByteArray path = QFile::encodeName(m_address.socketPath);
    ::unlink(path.constData()); // What a crash has left.
    m_listener = FileDescriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    return onAddress(::bind, m_listener, m_address.socketPath) == 0 &&
           ::chmod(path.constData(), fileMode) == 0 && ::listen(m_listener.get(), SOMAXCONN) == 0;
}

void SingleInstance::serve(MessageServer::Handler handler, std::chrono::milliseconds patience) {
    m_server = std::make_unique<MessageServer>(std::move(m_listener), std::move(handler), patience);
}

void SingleInstance::close() {
    ::unlink(QFile::encodeName(m_address.socketPath).constData());
    m_server.reset();
    m_listener.reset();
}

} // namespace orvane
