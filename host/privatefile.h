#pragma once

#include "host/export.h"

#include <QByteArray>
#include <QString>

#include <tl/expected.hpp>

/// Files and directories that only their owner may read. Another user may have put a trap in their
/// place: a link, a pipe, a device or their own file is never opened for writing.
namespace privatefile {

/// Reads a regular file of at most `limit` bytes; follows links. Anything else fails at once.
/// \return The content, or the reason of a failure without the file's name.
[[nodiscard]] HOST_EXPORT tl::expected<QByteArray, QString> read(const QString &path, qint64 limit);

/// Creates the directory and its missing parents with mode 0700 and syncs their names to the disk.
/// An existing directory stays as it is.
/// \return The problem, with the directory's name.
[[nodiscard]] HOST_EXPORT tl::expected<void, QString> createDirectory(const QString &path);

/// Checks whether `open` would accept the path: it is free, or a regular file that belongs to this
/// user or to the directory's owner. Opens no file, so SQLite keeps its locks.
/// \return The problem, with the file's name.
[[nodiscard]] HOST_EXPORT tl::expected<void, QString> examine(const QString &path);

/// Whether another user has any right on the file or directory.
[[nodiscard]] HOST_EXPORT bool isOpenToOthers(const QString &path);

/// Opens a file with the flags of open(2) and sets its mode to 0600. Never follows a link and never
/// blocks.
/// \return The descriptor, -1 after a failure, with the reason in errno.
[[nodiscard]] HOST_EXPORT int open(const QString &path, int flags);

/// Replaces the file's content atomically and sets mode 0600: after a kill or a power cut the file
/// holds either the old or the new content. The directory must exist.
/// \return The reason of a failure, without the file's name.
[[nodiscard]] HOST_EXPORT tl::expected<void, QString> write(const QString &path,
                                                            const QByteArray &content);

/// Syncs a directory to the disk, so that a new or renamed file is still there after a power cut.
/// \return Whether it succeeded; errno has the reason of a failure.
[[nodiscard]] HOST_EXPORT bool syncDirectory(const QString &path);

} // namespace privatefile
