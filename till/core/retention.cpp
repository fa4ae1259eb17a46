#include "till/core/retention.h"

#include "till/core/store.h"

#include <host/config.h>

#include <log4qt/logger.h>
#include <log4qt/logmanager.h>

#include <utility>

namespace till {

Retention::Retention(QString dataDirectory)
    : dataDirectory(std::move(dataDirectory))
    , days(Singleton<Config>::instance()->getInt(QStringLiteral("Till:keepDays"), usualDays))
{}

void Retention::step()
{
    if (!next.hasExpired())
        return;
    next.setRemainingTime(pause);
    Store store(dataDirectory);
    const auto removed = store.removeBefore(QDate::currentDate().addDays(-days), atOnce);
    const auto &logger = *Log4Qt::LogManager::logger(QStringLiteral("till.retention"));
    if (!removed)
        logger.warn(store.lastError());
    else if (*removed > 0)
        logger.info(QStringLiteral("removed %1 receipts older than %2 days"), *removed, days);
}

} // namespace till
