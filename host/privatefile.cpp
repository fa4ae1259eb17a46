#include "host/privatefile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace privatefile {

Content read(const QString &path, qint64 limit)
{
    const auto failure = [](const QString &reason) { return Content{{}, 0, reason}; };
    // Without O_NONBLOCK a pipe would be waited for until somebody writes to it.
    const auto descriptor =
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return failure(qt_error_string(errno));
    QFile file;
    if (!file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        ::close(descriptor);
        return failure(file.errorString());
    }
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0)
        return failure(qt_error_string(errno));
    if (!S_ISREG(status.st_mode))
        return failure(QStringLiteral("expected a regular file"));
    // The amount asked for is allocated, however short the file is.
    Content content{
        file.read(std::min<qint64>(status.st_size, limit) + 1), status.st_mode & 07777U, {}};
    if (file.error() != QFile::NoError)
        return failure(file.errorString());
    if (content.bytes.size() > limit)
        return failure(QStringLiteral("expected at most %1 bytes").arg(limit));
    return content;
}

std::optional<QString> createDirectory(const QString &path)
{
    const auto absolute = QDir::cleanPath(QFileInfo(path).absoluteFilePath());
    const QFileInfo info(absolute);
    if (info.isDir())
        return std::nullopt;
    if (!info.dir().exists()) {
        if (auto error = createDirectory(info.path()))
            return error;
    }
    const auto name = QFile::encodeName(absolute);
    // The umask may take rights away from mkdir, and another process may have been faster.
    if (::mkdir(name.constData(), 0700) == 0) {
        // A new name survives a power cut only when the directory that holds it is written out.
        if (::chmod(name.constData(), 0700) == 0 && syncDirectory(info.path()))
            return std::nullopt;
    } else if (errno == EEXIST && QFileInfo(absolute).isDir()) {
        return std::nullopt;
    }
    return QStringLiteral("%1: the directory cannot be created: %2")
        .arg(absolute, qt_error_string(errno));
}

int open(const QString &path, int flags)
{
    const auto descriptor = ::open(QFile::encodeName(path).constData(), flags | O_CLOEXEC, 0600);
    if (descriptor < 0)
        return -1;
    struct stat status = {};
    const auto narrow = ::fstat(descriptor, &status) == 0 &&
                        (!S_ISREG(status.st_mode) || (status.st_mode & 07777) == 0600 ||
                         ::fchmod(descriptor, 0600) == 0);
    if (narrow)
        return descriptor;
    const auto reason = errno;
    ::close(descriptor);
    errno = reason;
    return -1;
}

std::optional<QString> write(const QString &path, const QByteArray &content)
{
    QSaveFile file(path);
    // Its own commit does not notice that the last bytes did not fit on the disk.
    if (!file.open(QIODevice::WriteOnly) ||
        !file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner) ||
        file.write(content) != content.size() || !file.flush() || !file.commit())
        return file.errorString();
    // The file itself is synchronised by now, its new name is not.
    if (!syncDirectory(QFileInfo(path).path()))
        return qt_error_string();
    return std::nullopt;
}

bool syncDirectory(const QString &path)
{
    const auto name = QFile::encodeName(path);
    const auto descriptor = ::open(name.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    const auto synced = ::fsync(descriptor) == 0;
    const auto reason = errno;
    ::close(descriptor);
    errno = reason;
    return synced;
}

} // namespace privatefile
