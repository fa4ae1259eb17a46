#pragma once

#include <iosfwd>

namespace till {

struct Settings;

/// Brings the waiting messages to the service: until stopped by SIGINT or SIGTERM or, `once`, until
/// nothing is waiting or the service cannot be reached. On a terminal a long queue shows how far it
/// has come. \return The program's exit code: 1 when, `once`, something is still waiting or had to
/// be parked.
int runDelivery(const Settings &settings, bool once, std::ostream &output);

} // namespace till
