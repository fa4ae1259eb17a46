#pragma once

#include <QString>
#include <QStringList>

#include <iosfwd>

class DBQueueBroker;

namespace till {

/// How the loyalty queue stands: counts, and the next message's age, tries and last error.
QString queueStateText(DBQueueBroker &broker);

/// The integrator's commands on the queue: "list", "parked", "park ID", "retry ID", "retry all",
/// "export FILE". No argument means "list". \return The program's exit code: 2 for arguments that
/// are none, 1 when the queue or the file cannot be read or written.
int runQueueCommand(DBQueueBroker &broker, std::ostream &output, const QStringList &arguments);

} // namespace till
