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
    auto number = text;
    number.replace(u',', u'.');
    const auto point = number.indexOf(u'.');
    const auto whole = QStringView(number).left(point < 0 ? number.size() : point);
    const auto fraction = QStringView(number).mid(point < 0 ? number.size() : point + 1);
    if (!isDigits(whole) || (point >= 0 && !isDigits(fraction)) || fraction.size() > decimals)
        return std::nullopt;
    bool fits = false;
    const auto value = number.toDouble(&fits);
    if (!fits || value > maximum)
        return std::nullopt;
    return value;
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
