#pragma once

#include <QString>

#include <optional>

namespace till {

/// A whole number from `minimum` to `maximum`; nothing for any other text.
std::optional<int> parseWhole(const QString &text, int minimum, int maximum);

/// A decimal number such as "12.5" or "12,5" with at most so many decimals, from 0 to `maximum`;
/// nothing for any other text: a sign, an exponent, a blank.
std::optional<double> parseDecimal(const QString &text, int decimals, double maximum);

/// A sum of money with two decimals.
QString moneyText(double sum);
/// A quantity with three decimals.
QString quantityText(double quantity);

} // namespace till
