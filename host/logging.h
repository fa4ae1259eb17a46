#pragma once

#include "host/export.h"

#include <QString>

#include <optional>

/// Where the process's log goes.
///
/// Every message of Qt's logging, and of Log4Qt's where it stands on it, becomes one line written
/// at once. Levels and the pattern are Qt's: QT_LOGGING_RULES, QT_MESSAGE_PATTERN. Line breaks and
/// other control characters inside a message are written as \n, \r, \t or \uXXXX, so that a
/// text typed somewhere cannot pass for a line of its own.
namespace logging {

/// Starts writing to the file (appended to, mode 0600, its directory created with 0700 when
/// missing; empty for no file), to standard error, to both or to nothing. Replaces what an earlier
/// call started.
/// \return Why the file cannot be written, nothing when it can. After a failure all is as before.
[[nodiscard]] HOST_EXPORT std::optional<QString> start(const QString &file, bool toStandardError);

/// Gives the messages back to Qt's own handler and closes the file.
HOST_EXPORT void stop();

} // namespace logging
