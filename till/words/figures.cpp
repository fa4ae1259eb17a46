#include "till/words/figures.h"

#include <QLocale>
#include <QRegularExpression>

#include <algorithm>

namespace till {

using namespace Qt::StringLiterals;

QString moneyLabel(double sum)
{
    return QLocale().toString(sum, 'f', 2);
}

QString quantityLabel(double quantity)
{
    return QLocale().toString(quantity, 'f', QLocale::FloatingPointShortest);
}

QString phoneLabel(const QString &phone)
{
    static const QRegularExpression parts(u"^\\+?7(\\d{3})(\\d{3})(\\d{2})(\\d{2})$"_s);
    return QString(phone).replace(parts, u"+7 \\1 \\2-\\3-\\4"_s);
}

QString dateLabel(const QDate &date)
{
    return date.toString(dateFormat);
}

QString timeLabel(const QDateTime &moment)
{
    const auto local = moment.toLocalTime();
    const auto isToday = local.date() == QDate::currentDate();
    return local.toString(isToday ? u"HH:mm" : u"dd.MM HH:mm");
}

QString oneLine(QString text)
{
    const auto breaks = [](QChar character) {
        const auto category = character.category();
        return category == QChar::Other_Control || category == QChar::Separator_Line ||
               category == QChar::Separator_Paragraph;
    };
    std::replace_if(text.begin(), text.end(), breaks, QChar(u'?'));
    return text;
}

} // namespace till
