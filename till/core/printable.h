#pragma once

#include <QString>

#include <iosfwd>

namespace till {

/// The text with "?" for each control character except the line end, so that foreign text cannot
/// control the terminal.
QString printable(const QString &text);

/// Writes the printable text and a line end, and flushes.
void printLine(std::ostream &output, const QString &text);

} // namespace till
