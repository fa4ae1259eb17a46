#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace till {

/// Replaces a file's content at once or not at all, mode 0600, on the disk when it returns.
/// \return Why the file is as it was.
[[nodiscard]] std::optional<QString> writePrivately(const QString &file, const QByteArray &content);

} // namespace till
