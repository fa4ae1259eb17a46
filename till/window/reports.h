#pragma once

#include "till/core/store.h"

#include <utility>

namespace till {

/// The latest receipts whose orders the service refused: the number, and a line for the cashier.
/// Call it on the till's thread.
QList<std::pair<int, QString>> refusedOrders(Store &store);

/// The lines about a shift: its closed receipts, and what the delivery still has to do. Call it on
/// the till's thread.
QStringList shiftReport(Store &store, const TillPlace &place, int shift);

} // namespace till
