#include "till/core/numbers.h"

#include <algorithm>

namespace till {

namespace {

bool isDigits(QStringView text)
{
    const auto isDigit = [](QChar character) { return character >= u'0' && character <= u'9'; };
    return !text.isEmpty() && std::all_of(text.cbegin(), text.cend(), isDigit);
}

} // namespace

std::optional<int> parseWhole(const QString &text, int minimum, int maximum)
{
    bool fits = false;
    const auto number = text.toInt(&fits);
    if (!isDigits(text) || !fits || number < minimum || number > maximum)
        return std::nullopt;
    return number;
}

std::optional<double> parseDecimal(const QString &text, int decimals, double maximum)
{
    const auto point = text.indexOf(u'.');
    const auto whole = QStringView(text).left(point < 0 ? text.size() : point);
    const auto fraction = QStringView(text).mid(point < 0 ? text.size() : point + 1);
    if (!isDigits(whole) || (point >= 0 && !isDigits(fraction)) || fraction.size() > decimals)
        return std::nullopt;
    bool fits = false;
    const auto number = text.toDouble(&fits);
    if (!fits || number > maximum)
        return std::nullopt;
    return number;
}

QString moneyText(double sum)
{
    return QString::number(sum, 'f', 2);
}

QString quantityText(double quantity)
{
    return QString::number(quantity, 'f', 3);
}

} // namespace till
