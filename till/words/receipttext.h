#pragma once

#include "till/core/receiptview.h"

#include <QString>

namespace till {

/// The receipt as a table of at most 79 columns.
QString receiptText(const ReceiptView &receipt);
/// The card on the receipt and its holder, in one line.
QString holderText(const ReceiptView &receipt);

} // namespace till
