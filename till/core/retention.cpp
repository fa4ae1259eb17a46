#include "till/core/retention.h"

#include "till/core/settingtable.h"
#include "till/core/store.h"

#include <log4qt/logger.h>
#include <log4qt/logmanager.h>

using namespace Qt::StringLiterals;

namespace till {

Retention::Retention(Store &store)
    : store(store)
    , days(settingNumber("Till:keepDays"_L1))
{}

void Retention::step()
{
    if (Clock::steady() < next)
        return;
    next = Clock::steady() + pause;
    const auto removed = store.removeOld(days, atOnce);
    const auto &logger = *Log4Qt::LogManager::logger(u"till.retention"_s);
    if (!removed)
        logger.warn(removed.error());
    else if (*removed > 0)
        logger.info(u"removed %1 receipts older than %2 days"_s, *removed, days);
}

} // namespace till
