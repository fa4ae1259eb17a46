#pragma once

#include <QString>

namespace till {

/// Logs a text that the cashier is shown, with phone numbers and e-mail addresses masked.
void logTold(const QString &text);

} // namespace till
