#include "till/core/numbers.h"

#include <QList>

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
    const auto number = parseDecimal(text, 0, maximum);
    return number && *number >= minimum ? std::optional(static_cast<int>(*number)) : std::nullopt;
}

std::optional<double> parseDecimal(const QString &text, int decimals, double maximum)
{
    const auto number = QString(text).replace(u',', u'.');
    const auto parts = QStringView(number).split(u'.');
    const auto value = number.toDouble();
    if (parts.size() > 2 || !std::all_of(parts.begin(), parts.end(), isDigits) ||
        parts.value(1).size() > decimals || value > maximum)
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
