#pragma once

#include <QJsonArray>
#include <QJsonObject>

#include <iosfwd>

namespace till {

/// Writes JSON for another program to read, and a line's end.
void printJson(std::ostream &output, const QJsonObject &object);
void printJson(std::ostream &output, const QJsonArray &array);

} // namespace till
