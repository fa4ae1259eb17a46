#include "till/core/numbers.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace till {

std::optional<int> parseWhole(const QString &text, int minimum, int maximum)
{
    const auto number = parseDecimal(text, 0, maximum);
    return number && *number >= minimum ? std::optional(static_cast<int>(*number)) : std::nullopt;
}

std::optional<double> parseDecimal(const QString &text, int decimals, double maximum)
{
    static const QRegularExpression number(uR"(^([0-9]+)(?:[.,]([0-9]+))?\z)"_s);
    const auto match = number.match(text);
    const auto fraction = match.captured(2);
    const auto value = (match.captured(1) + u'.' + fraction).toDouble();
    if (!match.hasMatch() || fraction.size() > decimals || value > maximum)
        return std::nullopt;
    return value;
}

} // namespace till
