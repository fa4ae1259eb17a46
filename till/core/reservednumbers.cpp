#include "till/core/reservednumbers.h"

#include <host/privatefile.h>

#include <log4qt/logger.h>
#include <log4qt/logmanager.h>

#include <algorithm>

namespace till {

ReservedNumbers::ReservedNumbers(QString file)
    : file(std::move(file))
{}

int ReservedNumbers::highest()
{
    constexpr qint64 enough = 32;
    if (upTo < 0)
        upTo = std::max(privatefile::read(file, enough).bytes.trimmed().toInt(), 0);
    return upTo;
}

void ReservedNumbers::reserve(int number)
{
    if (number <= highest())
        return;
    upTo = (number / blockSize + 1) * blockSize;
    if (const auto error = privatefile::write(file, QByteArray::number(upTo) + '\n')) {
        static const auto *const logger = Log4Qt::LogManager::logger(QStringLiteral("till.store"));
        logger->warn(QStringLiteral("%1: cannot be written: %2"), file, *error);
        upTo = number; // tried again with the next one
    }
}

} // namespace till
