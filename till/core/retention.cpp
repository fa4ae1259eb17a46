#include "till/core/retention.h"

#include "till/core/settingtable.h"
#include "till/core/store.h"

#include <log4qt/logger.h>
#include <log4qt/logmanager.h>

namespace till {

Retention::Retention(Store &store)
    : store(store)
    , days(settingNumber(QLatin1String("Till:keepDays")))
{}

void Retention::step()
{
    if (Clock::steady() < next)
        return;
    next = Clock::steady() + pause;
    const auto removed = store.removeOld(days, atOnce);
    const auto &logger = *Log4Qt::LogManager::logger(QStringLiteral("till.retention"));
    if (!removed)
        logger.warn(removed.error());
    else if (*removed > 0)
        logger.info(QStringLiteral("removed %1 receipts older than %2 days"), *removed, days);
}

} // namespace till
