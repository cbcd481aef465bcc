// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/system/IndependentChild.h"

#include "base/Logging.h"
#include "base/ProcessSettings.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/file.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <utility>
#include <vector>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::milliseconds lockPollInterval{250};
/// Two minutes: whoever holds the lock for longer hangs, and the caller has other ways.
constexpr int lockPolls = 480;

ProcessOutcome notStarted(const QString& reason) {
    return std::unexpected(LaunchFailure{reason});
}

/// Texts in the form that exec takes, which points into them.
class TextVector {
public:
    explicit TextVector(const QStringList& texts) {
        for (const QString& text : texts)
            m_bytes.push_back(QFile::encodeName(text));
        for (QByteArray& bytes : m_bytes)
            m_pointers.push_back(bytes.data());
        m_pointers.push_back(nullptr);
    }

    [[nodiscard]] char* const* data() const { return m_pointers.data(); }

private:
    std::vector<QByteArray> m_bytes;
    std::vector<char*> m_pointers;
};

/// The streams of the child and its place in the system.
class SpawnSettings {
public:
    SpawnSettings(int inheritedDescriptor, const char* folder) {
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        ::posix_spawn_file_actions_addchdir_np(&actions, folder);
        // Everything else is closed: what stayed open would outlive the program too.
        constexpr int first = STDERR_FILENO + 1;
        if (inheritedDescriptor >= 0)
            ::posix_spawn_file_actions_adddup2(&actions, inheritedDescriptor, first);
        ::posix_spawn_file_actions_addclosefrom_np(&actions,
                                                   inheritedDescriptor >= 0 ? first + 1 : first);
        ::posix_spawnattr_init(&attributes);
        sigset_t none;
        ::sigemptyset(&none);
        ::posix_spawnattr_setsigmask(&attributes, &none);
        sigset_t all;
        ::sigfillset(&all);
        ::posix_spawnattr_setsigdefault(&attributes, &all);
        ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK |
                                                    POSIX_SPAWN_SETSIGDEF);
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;
    ~SpawnSettings() {
        ::posix_spawn_file_actions_destroy(&actions);
        ::posix_spawnattr_destroy(&attributes);
    }

    posix_spawn_file_actions_t actions{};
    posix_spawnattr_t attributes{};
};

} // namespace

IndependentChild::IndependentChild(ProcessRequest request)
    : m_request(std::move(request)), m_remainingPolls(lockPolls) {
    m_lockTimer.setInterval(lockPollInterval);
    m_lockTimer.setSingleShot(true);
    QObject::connect(&m_lockTimer, &QTimer::timeout, &m_lockTimer, [this] { startOrWait(); });
}

QFuture<ProcessOutcome> IndependentChild::start() {
    m_promise.start();
    startOrWait();
    return m_promise.future();
}

void IndependentChild::abandon() {
    m_lockTimer.stop();
    m_exited.reset();
    if (m_pid > 0 && !m_isFinished) {
        qCInfo(logProcess) << m_request.program << m_pid << "goes on by itself";
        m_folder->setAutoRemove(false);
    }
    finish(notStarted(u"the program is ending"_s));
}

IndependentChild::Lock IndependentChild::takeLock() {
    if (m_request.lockFile.isEmpty())
        return Lock::notNeeded;
    if (!m_lock.isOpen()) {
        QDir().mkpath(QFileInfo(m_request.lockFile).path());
        const QByteArray name = QFile::encodeName(m_request.lockFile);
        m_lock = FileDescriptor(::open(name.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    }
    // Without a usable folder nobody else has the lock either.
    if (!m_lock.isOpen())
        return Lock::notNeeded;
    if (::flock(m_lock.get(), LOCK_EX | LOCK_NB) == 0)
        return Lock::taken;
    return errno == EWOULDBLOCK ? Lock::held : Lock::notNeeded;
}

void IndependentChild::startOrWait() {
    if (takeLock() != Lock::held) {
        spawn();
    } else if (--m_remainingPolls > 0) {
        if (m_remainingPolls == lockPolls - 1)
            qCInfo(logProcess) << m_request.program << "waits for the lock" << m_request.lockFile;
        m_lockTimer.start();
    } else {
        finish(notStarted(u"another process holds "_s + m_request.lockFile));
    }
}

void IndependentChild::spawn() {
    const TextVector arguments(QStringList{m_request.program} + m_request.arguments);
    const TextVector variables(m_request.environment ? m_request.environment->toStringList()
                                                     : QStringList());
    m_folder = std::make_unique<QTemporaryDir>();
    const QByteArray folder =
        m_folder->isValid() ? QFile::encodeName(m_folder->path()) : QByteArray("/");
    const SpawnSettings settings(m_lock.get(), folder.constData());
    const ProcessSettings::UsersOwn untilStarted;
    const int error = ::posix_spawn(&m_pid, QFile::encodeName(m_request.program).constData(),
                                    &settings.actions, &settings.attributes, arguments.data(),
                                    m_request.environment ? variables.data() : ::environ);
    // From now on the child alone holds the lock.
    m_lock.reset();
    if (error != 0)
        return finish(notStarted(QString::fromLocal8Bit(std::strerror(error))));
    qCInfo(logProcess) << m_request.program << m_pid << "started; it ends by itself";
    m_exit = FileDescriptor(static_cast<int>(::syscall(SYS_pidfd_open, m_pid, 0)));
    if (!m_exit.isOpen())
        return finish(notStarted(u"its end cannot be watched"_s));
    m_exited = std::make_unique<QSocketNotifier>(m_exit.get(), QSocketNotifier::Read);
    QObject::connect(m_exited.get(), &QSocketNotifier::activated, m_exited.get(),
                     [this] { collect(); });
}

void IndependentChild::collect() {
    siginfo_t info{};
    const int error = ::waitid(P_PIDFD, static_cast<id_t>(m_exit.get()), &info, WEXITED | WNOHANG);
    if (error == 0 && info.si_pid == 0)
        return;
    m_exited->setEnabled(false);
    ProcessResult result;
    if (error == 0 && info.si_code == CLD_EXITED)
        result.exitCode = info.si_status;
    else
        result.end = ProcessResult::End::killed;
    qCInfo(logProcess) << m_request.program << m_pid << "ended with" << info.si_status;
    finish(result);
}

void IndependentChild::finish(ProcessOutcome outcome) {
    if (std::exchange(m_isFinished, true))
        return;
    m_promise.addResult(std::move(outcome));
    m_promise.finish();
}

} // namespace orvane
