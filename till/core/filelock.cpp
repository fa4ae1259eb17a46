#include "till/core/filelock.h"

#include <host/privatefile.h>

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#include <utility>

namespace till {

FileLock::FileLock(QString path)
    : path(std::move(path))
{}

FileLock::~FileLock()
{
    release();
}

FileLock::State FileLock::acquire()
{
    if (descriptor >= 0)
        return State::Held;
    const auto opened = privatefile::open(path, QFileInfo(path).isDir() ? O_RDONLY | O_DIRECTORY
                                                                        : O_RDONLY | O_CREAT);
    if (opened >= 0 && ::flock(opened, LOCK_EX | LOCK_NB) == 0) {
        descriptor = opened;
        return State::Held;
    }
    const auto reason = errno;
    if (opened >= 0)
        ::close(opened);
    if (reason == EWOULDBLOCK)
        return State::Busy;
    error = QStringLiteral("%1: cannot be locked: %2").arg(path, qt_error_string(reason));
    return State::Unavailable;
}

bool FileLock::isHeld(const QString &path)
{
    // A shared lock, so that two who ask do not take each other for its holder.
    const auto descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    const auto isBusy =
        descriptor >= 0 && ::flock(descriptor, LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    if (descriptor >= 0)
        ::close(descriptor);
    return isBusy;
}

void FileLock::release()
{
    if (descriptor >= 0)
        ::close(descriptor);
    descriptor = -1;
}

} // namespace till
