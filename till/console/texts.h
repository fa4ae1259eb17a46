#pragma once

#include <QCoreApplication>

namespace till {

/// Texts of the console: `ConsoleText::tr("...")` gives one in the cashier's language.
struct ConsoleText
{
    Q_DECLARE_TR_FUNCTIONS(ConsoleText)
};

} // namespace till
