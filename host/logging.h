#pragma once

#include "host/export.h"

#include <QString>

#include <tl/expected.hpp>

/// Destination of the process's log.
///
/// Every message of Qt's logging becomes one line, written at once; so do those of Log4Qt loggers
/// built on Qt's logging. QT_LOGGING_RULES and QT_MESSAGE_PATTERN set the levels and the pattern.
/// Line breaks and other control characters in a message become \n, \r, \t or \uXXXX, so that typed
/// text cannot forge a log line. The secret key becomes "***" in every message. Rotate the file by
/// copying and truncating it.
namespace logging {

/// Starts logging to the file, to standard error, to both or to neither; an earlier call's log
/// ends. The file is appended to, with mode 0600; a missing directory is created with 0700. An
/// empty name means no file.
/// \return The reason why the file cannot be written; after a failure the earlier log continues.
[[nodiscard]] HOST_EXPORT tl::expected<void, QString> start(const QString &file,
                                                            bool toStandardError);

/// Restores Qt's own message handler and closes the file.
HOST_EXPORT void stop();

} // namespace logging
