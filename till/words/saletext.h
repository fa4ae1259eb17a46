#pragma once

#include "till/core/saleevent.h"

#include <QCoreApplication>
#include <QString>

#include <optional>

namespace till {

/// The translation context of texts that all faces share.
struct SaleText
{
    Q_DECLARE_TR_FUNCTIONS(SaleText)
};

/// The cashier's text for an event; `receipt` is the receipt after it. Empty for `Identified`,
/// which a face shows by the customer's data.
QString eventText(const SaleEvent &event, const std::optional<ReceiptView> &receipt);
/// Whether the cashier must not miss the event.
bool isProblem(const SaleEvent &event);

} // namespace till
