#pragma once

#include <cmath>
#include <limits>

/// A sum of money rounded to hundredths, halves away from zero.
inline double roundToHundredths(double sum)
{
    // A decimal half such as 1.005 may be stored slightly below its value.
    constexpr double hair = 1 + 4 * std::numeric_limits<double>::epsilon();
    return std::round(sum * 100 * hair) / 100;
}
