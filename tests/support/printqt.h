#pragma once

#include <QString>

#include <ostream>

/// Prints a text in a failed expectation.
inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}
