#include "till/core/processlock.h"

#include <host/privatefile.h>

#include <QThread>

#include <cerrno>
#include <csignal>

using namespace Qt::StringLiterals;

namespace till {

ProcessLock::ProcessLock(const QString &file)
    : lock(file)
{
    lock.setStaleLockTime(0); // never stale by age alone
}

tl::expected<void, QString> ProcessLock::acquire()
{
    // Opening a pipe would block.
    if (auto examined = privatefile::examine(lock.fileName()); !examined)
        return examined;
    if (lock.isLocked() || lock.tryLock() || tryLeft())
        return {};
    const auto other = holder();
    return tl::unexpected(other ? u"%1: held by the process %2"_s.arg(lock.fileName()).arg(*other)
                                : u"%1: cannot be locked"_s.arg(lock.fileName()));
}

/// A process that was killed, or a power cut, may have left a file that names nobody: the lock's,
/// or the one that Qt holds while it removes a dead process's lock. A living holder writes its name
/// within the moment.
bool ProcessLock::tryLeft()
{
    constexpr int moment = 1'000; // milliseconds
    constexpr int pause = 100;
    for (int waited = 0; waited <= moment + pause; waited += pause) {
        if (lock.error() != QLockFile::LockFailedError || holder())
            return false;
        QLockFile removal(lock.fileName() + ".rmlock"_L1);
        removal.setStaleLockTime(moment);
        if (removal.tryLock())
            removal.unlock();
        lock.setStaleLockTime(moment);
        const auto isTaken = lock.tryLock();
        lock.setStaleLockTime(0);
        if (isTaken)
            return true;
        QThread::msleep(pause);
    }
    return false;
}

std::optional<qint64> ProcessLock::holderOf(const QString &file)
{
    if (!privatefile::examine(file))
        return std::nullopt;
    qint64 holder = 0;
    QString host;
    QString program;
    const auto isThere = QLockFile(file).getLockInfo(&holder, &host, &program) && holder > 0;
    // EPERM: the process runs under another user.
    const auto runs = isThere && (::kill(static_cast<pid_t>(holder), 0) == 0 || errno == EPERM);
    return runs ? std::optional(holder) : std::nullopt;
}

} // namespace till
