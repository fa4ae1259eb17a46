#include "model/isodate.h"

namespace lmmindbox {

QDate readIsoDate(const QString &text)
{
    // Qt itself takes other separators and anything behind the day.
    const QLatin1Char dash('-');
    const auto dashed = text.size() == 10 && text.at(4) == dash && text.at(7) == dash;
    return dashed ? QDate::fromString(text, Qt::ISODate) : QDate();
}

} // namespace lmmindbox
