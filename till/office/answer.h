#pragma once

#include "till/core/printable.h"

#include <QJsonDocument>

#include <ostream>

namespace till {

/// Says why a command could not do it. \return The exit code for that.
inline int fail(std::ostream &output, const QString &reason)
{
    printLine(output, reason);
    return 1;
}

/// Writes JSON for another program to read, and a line's end.
template<typename Json>
void printJson(std::ostream &output, const Json &json)
{
    output << QJsonDocument(json).toJson().constData() << std::flush;
}

} // namespace till
