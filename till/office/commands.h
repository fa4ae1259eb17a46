#pragma once

#include "till/core/settings.h"
#include "till/core/store.h"

#include <QStringList>

#include <iosfwd>

class DBQueueBroker;

namespace till {

struct SettingComplaint;

// The integrator's commands. Each answers to the output and returns the program's exit code: 0 when
// it is done, 1 when it could not be done, 2 for arguments that are none, and what is said here.

/// What a monitor reads from the exit code of a command on the queue: somebody must look after
/// parked messages.
inline constexpr int parkedExit = 3;

/// What "till check" is asked for.
struct CheckRequest
{
    QString phone;   ///< To look up; empty for one that nobody has.
    QString metrics; ///< The file for the result as metrics; empty for none.
    bool asJson = false;
};

/// Says whether this till will work: a line for each thing looked at and how it is mended. Writes
/// nothing but the answer, except that a store of an older version is brought forward. \return 1
/// with a warning, 2 when something failed.
int runCheck(const SettingsOverrides &overrides, const CheckRequest &request, std::ostream &output);

/// Brings the waiting messages to the service: until stopped by SIGINT or SIGTERM or, `once`, until
/// nothing is waiting or the service cannot be reached. On a terminal a long queue shows how far it
/// has come. \return `once`, 1 when something is still waiting, else `parkedExit` when something
/// is parked.
int runDelivery(const Settings &settings, bool once, std::ostream &output);

/// Writes the till's figures as metrics, into the file if one is named, else to the output. A store
/// that cannot be read is a figure as well.
int runMetrics(const Settings &settings, const QString &file, std::ostream &output);

/// "list", "parked", "park ID", "retry ID", "retry all", "export FILE". No argument means "list";
/// that one and "parked" can answer as JSON. \return Of those two, `parkedExit` when there is one.
int runQueueCommand(DBQueueBroker &broker, std::ostream &output, const QStringList &arguments,
                    bool asJson);

/// No argument lists the receipts that pass the filter, "show NUMBER" shows all that is known of
/// one.
int runReceiptsCommand(Store &store, std::ostream &output, const QStringList &arguments,
                       const ReceiptFilter &filter, bool asJson);

/// How the loyalty queue stands: counts, and the next message's age, tries and last error.
QString textOf(const QueueState &state);

/// What is wrong with a setting and what was expected, on one line.
QString textOf(const SettingComplaint &complaint);

} // namespace till
