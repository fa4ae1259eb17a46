#pragma once

#include <QString>

#include <optional>

namespace till {

/// The whole number in the text, from `minimum` to `maximum`; nothing for any other text.
std::optional<int> parseWhole(const QString &text, int minimum, int maximum);

/// The number in a text such as "12.5" or "12,5", from 0 to `maximum`, with at most `decimals` of
/// them; nothing for any other text, such as one with a sign, an exponent or a blank.
std::optional<double> parseDecimal(const QString &text, int decimals, double maximum);

} // namespace till
