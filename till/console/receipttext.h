#pragma once

#include <QString>

class AbstractDocument;

namespace till {

/// The receipt as a table for the cashier: positions with their discounts, total, card.
QString receiptText(const AbstractDocument &document);

/// One line on the card and its holder.
QString holderText(const AbstractDocument &document);

} // namespace till
