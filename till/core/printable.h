#pragma once

#include <QString>

#include <iosfwd>

namespace till {

/// The text with "?" for each control character but the line's end, so that no text from elsewhere
/// can command the terminal.
QString printable(const QString &text);

/// Writes a text as a line of its own, or several, printable, at once.
void printLine(std::ostream &output, const QString &text);

} // namespace till
