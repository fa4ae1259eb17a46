#pragma once

#include "host/export.h"

#include <QString>

#include <optional>

/// Where the process's log goes.
///
/// Every message of Qt's logging, and of Log4Qt's where it stands on it, becomes one line written
/// at once. Levels and the pattern are Qt's: QT_LOGGING_RULES, QT_MESSAGE_PATTERN. Line breaks and
/// other control characters inside a message are written as \n, \r, \t or \uXXXX, so that a
/// text typed somewhere cannot pass for a line of its own. The secret key is written as "***",
/// whoever wrote the message.
namespace logging {

/// Starts writing to the file (appended to, mode 0600, its directory created with 0700 when
/// missing; empty for no file), to standard error, to both or to nothing. Replaces what an earlier
/// call started.
/// \return Why the file cannot be written, nothing when it can. After a failure all is as before.
[[nodiscard]] HOST_EXPORT std::optional<QString> start(const QString &file, bool toStandardError);

/// Opens the file anew by its name, so that one that was renamed is let go. Not to be called within
/// a signal's handler.
/// \return Why the file cannot be opened, nothing when it could. After a failure the lines go where
///         they went before.
[[nodiscard]] HOST_EXPORT std::optional<QString> reopen();

/// Gives the messages back to Qt's own handler and closes the file.
HOST_EXPORT void stop();

} // namespace logging
