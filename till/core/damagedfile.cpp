#include "till/core/damagedfile.h"

#include <host/privatefile.h>

#include <QFile>
#include <QFileInfo>

#include <cstdio>

namespace till {

QString putAside(const QString &file, const QString &dataDirectory)
{
    const auto directory = dataDirectory + QLatin1String("/damaged");
    if (const auto error = privatefile::createDirectory(directory))
        return *error;
    QString kept;
    for (int number = 1; kept.isEmpty() || QFileInfo::exists(kept); ++number)
        kept = QStringLiteral("%1/%2.%3").arg(directory, QFileInfo(file).fileName()).arg(number);
    // The database itself last: without it the others would be taken for those of a new one.
    for (const auto *suffix : {"-wal", "-shm", ""}) {
        const auto from = QFile::encodeName(file) + suffix;
        if (QFileInfo::exists(QFile::decodeName(from)) &&
            std::rename(from.constData(), (QFile::encodeName(kept) + suffix).constData()) != 0)
            return QStringLiteral("it cannot be moved to %1: %2").arg(kept, qt_error_string());
    }
    return privatefile::syncDirectory(directory) &&
                   privatefile::syncDirectory(QFileInfo(file).path())
               ? QStringLiteral("it is kept as %1").arg(kept)
               : qt_error_string();
}

} // namespace till
