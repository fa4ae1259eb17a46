#pragma once

#include "till/core/store.h"

#include <QStringList>

#include <iosfwd>

namespace till {

/// The integrator's look at the receipts: no argument lists those that pass the filter, "show
/// NUMBER" shows all that is known of one. \return The program's exit code: 2 for arguments that
/// are none, 1 when there is no such receipt or the store cannot be read.
int runReceiptsCommand(Store &store, std::ostream &output, const QStringList &arguments,
                       const ReceiptFilter &filter, bool asJson);

} // namespace till
