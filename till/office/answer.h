#pragma once

#include "till/core/printable.h"

#include <QCoreApplication>
#include <QJsonDocument>

#include <ostream>

namespace till {

/// The translation context of the integrator's commands.
struct Office
{
    Q_DECLARE_TR_FUNCTIONS(Office)
};

/// Prints why a command failed. \return The exit code of a failure.
inline int fail(std::ostream &output, const QString &reason)
{
    printLine(output, reason);
    return 1;
}

/// Prints JSON and a line end.
template<typename Json>
void printJson(std::ostream &output, const Json &json)
{
    output << QJsonDocument(json).toJson().constData() << std::flush;
}

} // namespace till
