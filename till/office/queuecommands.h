#pragma once

#include <QString>
#include <QStringList>

#include <iosfwd>

class DBQueueBroker;

namespace till {

/// How the loyalty queue stands: counts, and the next message's age, tries and last error.
QString queueStateText(DBQueueBroker &broker);

/// What a monitor reads from the exit code of a command on the queue.
namespace queueexit {
inline constexpr int unusable = 1; ///< The store or a file cannot be read or written.
inline constexpr int badArguments = 2;
inline constexpr int parked = 3; ///< Somebody must look after parked messages.
} // namespace queueexit

/// The integrator's commands on the queue: "list", "parked", "park ID", "retry ID", "retry all",
/// "export FILE". No argument means "list"; that one and "parked" can answer as JSON. \return The
/// program's exit code; of the two that look only, `queueexit::parked` when there is one.
int runQueueCommand(DBQueueBroker &broker, std::ostream &output, const QStringList &arguments,
                    bool asJson = false);

} // namespace till
