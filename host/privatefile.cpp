#include "host/privatefile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace privatefile {

namespace {

/// Whether it is a regular file of this user or of its directory's owner: root may read a till's
/// files.
bool isOwn(const struct stat &file, const QString &path)
{
    const auto owner = QFileInfo(QFileInfo(path).absolutePath()).ownerId();
    return S_ISREG(file.st_mode) && (file.st_uid == ::geteuid() || file.st_uid == owner);
}

} // namespace

tl::expected<QByteArray, QString> read(const QString &path, qint64 limit)
{
    const QFileInfo info(path);
    QFile file(path);
    if (info.exists() && !info.isFile()) // opening a pipe blocks
        return tl::unexpected(u"expected a regular file"_s);
    if (!file.open(QIODevice::ReadOnly))
        return tl::unexpected(file.errorString());
    // read() allocates the size it is asked for, even for a short file.
    auto bytes = file.read(std::min(file.size(), limit) + 1);
    if (file.error() != QFile::NoError)
        return tl::unexpected(file.errorString());
    if (bytes.size() > limit)
        return tl::unexpected(u"expected at most %1 bytes"_s.arg(limit));
    return bytes;
}

tl::expected<void, QString> createDirectory(const QString &path)
{
    const auto absolute = QDir::cleanPath(QFileInfo(path).absoluteFilePath());
    const QFileInfo info(absolute);
    if (info.isDir())
        return {};
    if (auto made = createDirectory(info.path()); !made)
        return made;
    // Another process may have created it meanwhile. A new name survives a power cut only when its
    // parent directory is synced.
    const auto mode = QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner;
    if ((QDir().mkdir(absolute, mode) && syncDirectory(info.path())) || QFileInfo(absolute).isDir())
        return {};
    return tl::unexpected(
        u"%1: the directory cannot be created: %2"_s.arg(absolute, qt_error_string()));
}

tl::expected<void, QString> examine(const QString &path)
{
    struct stat status = {};
    if (::lstat(QFile::encodeName(path).constData(), &status) != 0 || isOwn(status, path))
        return {};
    return tl::unexpected(u"%1: expected a regular file of the till's user"_s.arg(path));
}

bool isOpenToOthers(const QString &path)
{
    constexpr auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup |
                            QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
    return (QFile::permissions(path) & others) != 0;
}

int open(const QString &path, int flags)
{
    // Opening a pipe blocks.
    const auto descriptor = ::open(QFile::encodeName(path).constData(),
                                   flags | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0600);
    if (descriptor < 0)
        return -1;
    struct stat status = {};
    errno = EPERM;
    if (::fstat(descriptor, &status) == 0 && isOwn(status, path) &&
        ((status.st_mode & 07777) == 0600 || ::fchmod(descriptor, 0600) == 0))
        return descriptor;
    const auto reason = errno;
    ::close(descriptor);
    errno = reason;
    return -1;
}

tl::expected<void, QString> write(const QString &path, const QByteArray &content)
{
    if (auto fine = examine(path); !fine)
        return fine;
    // QSaveFile follows links, and misses that the last bytes did not fit on the disk.
    QTemporaryFile file(path + ".XXXXXX"_L1);
    if (!file.open() || file.write(content) != content.size() || !file.flush() ||
        ::fsync(file.handle()) != 0)
        return tl::unexpected(file.errorString());
    if (std::rename(QFile::encodeName(file.fileName()).constData(),
                    QFile::encodeName(path).constData()) != 0)
        return tl::unexpected(qt_error_string());
    file.setAutoRemove(false);
    // The file is synced by now, its new name is not.
    if (!syncDirectory(QFileInfo(path).path()))
        return tl::unexpected(qt_error_string());
    return {};
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
