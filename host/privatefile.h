#pragma once

#include "host/export.h"

#include <QByteArray>
#include <QString>

#include <optional>

/// Files and directories for their owner alone, whatever the process's umask.
namespace privatefile {

/// What was read from a file.
struct Content
{
    QByteArray bytes;  ///< Empty after a failure.
    unsigned mode = 0; ///< The file's access rights.
    QString error;     ///< Why it was not read, without the file's name; empty after a success.
};

/// Reads a regular file of at most `limit` bytes. Anything else is a failure and is never waited
/// for.
[[nodiscard]] HOST_EXPORT Content read(const QString &path, qint64 limit);

/// Creates the directory and those above it that are missing, each with mode 0700 and its name
/// written to the disk. A directory that exists stays as it is.
/// \return Why it is not there, nothing when it is.
[[nodiscard]] HOST_EXPORT std::optional<QString> createDirectory(const QString &path);

/// Opens a file with the flags of open(2), with mode 0600 if it is created. One that exists is
/// narrowed to 0600.
/// \return The descriptor, -1 after a failure, with the reason in errno.
[[nodiscard]] HOST_EXPORT int open(const QString &path, int flags);

/// Replaces the file's content, with mode 0600, so that after a kill or a power cut it holds either
/// the old or the new content as a whole. The directory must exist.
/// \return Why the new content is not on the disk, without the file's name; nothing when it is.
[[nodiscard]] HOST_EXPORT std::optional<QString> write(const QString &path,
                                                       const QByteArray &content);

/// Writes the names in a directory to the disk, so that a new or renamed file is found there after
/// a power cut. \return Whether it was done; the reason of a failure is in errno.
[[nodiscard]] HOST_EXPORT bool syncDirectory(const QString &path);

} // namespace privatefile
