#pragma once

#include "till/core/settings.h"
#include "till/core/store.h"

#include <QStringList>

#include <iosfwd>

namespace till {

// The integrator's commands. Each prints its answer and returns the program's exit code: 0 for
// success, 1 for a failure, 2 for bad arguments, and other codes as told at the command.

/// The exit code of a queue command when messages are parked: a monitor must call somebody.
inline constexpr int parkedExit = 3;

/// The options of "till check".
struct CheckRequest
{
    QString phone;   ///< The phone to look up; empty for an unassigned one.
    QString metrics; ///< The file for the result as metrics; empty for none.
    bool asJson = false;
};

/// Tells whether this till will work: a line a check, and how to mend a fault. Changes nothing on
/// the disk. \return 1 with a warning, 2 with a failure.
int runCheck(const SettingsOverrides &overrides, const CheckRequest &request, std::ostream &output);

/// Delivers the waiting messages until the process is killed; with `once`, until none waits or the
/// service is unreachable. Shows the progress of a long queue on a terminal. \return 1 when another
/// process delivers; with `once` also 1 while messages wait, else `parkedExit` when some are
/// parked.
int runDelivery(const Settings &settings, bool once, std::ostream &output);

/// Writes the till's metrics into the file, or to the output when `file` is empty. An unreadable
/// store is a metric, not a failure.
int runMetrics(const Settings &settings, const QString &file, std::ostream &output);

/// "list", "parked", "park ID", "retry ID", "retry all" or "export FILE"; no argument means "list".
/// "list" and "parked" can print JSON, and return `parkedExit` when messages are parked.
int runQueueCommand(Store &store, std::ostream &output, const QStringList &arguments, bool asJson);

/// Without arguments lists the receipts that pass the filter; "show NUMBER" shows one with its
/// history.
int runReceiptsCommand(Store &store, std::ostream &output, const QStringList &arguments,
                       const ReceiptFilter &filter, bool asJson);

/// The delivery's state, in one line.
QString textOf(const DeliveryState &state);

} // namespace till
