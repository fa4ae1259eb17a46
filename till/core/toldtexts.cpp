#include "till/core/toldtexts.h"

#include <log4qt/logger.h>
#include <log4qt/logmanager.h>

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace till {

namespace {

/// Masks phone numbers and e-mail addresses, which a service's message may repeat. A date with a
/// time has as many digits as a phone, and stays.
QString withoutPersonalData(QString text)
{
    static const QRegularExpression personal(
        uR"re([^\s<(]+@[^\s>),;]+|(?<!\d)(?!\d{4}-\d\d-\d\d)\+?\d(?:[ ()-]*\d){9,})re"_s);
    return text.replace(personal, u"***"_s);
}

} // namespace

void logTold(const QString &text)
{
    static const auto *const logger = Log4Qt::LogManager::logger(u"till.cashier"_s);
    if (!text.isEmpty())
        logger->info(u"%1"_s, withoutPersonalData(text));
}

} // namespace till
