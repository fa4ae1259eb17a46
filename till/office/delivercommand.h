#pragma once

#include <iosfwd>

namespace till {

struct Settings;

/// Brings the waiting messages to the service: until stopped by SIGINT or SIGTERM or, `once`, until
/// nothing is waiting or the service cannot be reached. On a terminal a long queue shows how far it
/// has come. \return The program's exit code: `once`, 1 when something is still waiting, else
/// `queueexit::parked` when something is parked.
int runDelivery(const Settings &settings, bool once, std::ostream &output);

} // namespace till
