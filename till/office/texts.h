#pragma once

#include <QCoreApplication>

namespace till {

/// Texts of the integrator's commands: `Office::tr("...")` gives one in the till's language.
struct Office
{
    Q_DECLARE_TR_FUNCTIONS(Office)
};

} // namespace till
