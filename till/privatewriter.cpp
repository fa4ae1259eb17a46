#include "till/privatewriter.h"

#include <host/privatefile.h>

#include <QFileInfo>
#include <QSaveFile>

namespace till {

std::optional<QString> writePrivately(const QString &file, const QByteArray &content)
{
    QSaveFile target(file);
    // Its own commit does not notice that the last bytes did not fit on the disk.
    const auto written = target.open(QIODevice::WriteOnly) &&
                         target.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner) &&
                         target.write(content) == content.size() && target.flush() &&
                         target.commit();
    if (!written)
        return QStringLiteral("%1: cannot be written: %2").arg(file, target.errorString());
    if (!privatefile::syncDirectory(QFileInfo(file).path()))
        return QStringLiteral("%1: cannot be written to the disk: %2").arg(file, qt_error_string());
    return std::nullopt;
}

} // namespace till
