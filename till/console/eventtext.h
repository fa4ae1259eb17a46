#pragma once

#include "till/core/deliverystate.h"
#include "till/core/saleevent.h"

#include <QString>

#include <optional>

namespace till {

/// What the cashier reads of an event, one line or several.
QString eventText(const SaleEvent &event, const std::optional<ReceiptView> &receipt);
QString deliveryText(const DeliveryState &state);

} // namespace till
