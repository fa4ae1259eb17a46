#pragma once

#include "till/core/backoff.h"

#include <chrono>
#include <vector>

namespace chain {

using std::chrono::milliseconds;
using std::chrono::seconds;

/// A chain of tills whose service goes away for a while.
struct Scenario
{
    int tills = 10'000;
    int receiptsPerHour = 30; ///< Of each till, at random times.
    seconds outage{7'200};
    int capacity = 0; ///< Requests a second; 0 for twice of what all tills send on a usual day.
    unsigned seed = 1;
    bool jitter = true;     ///< Whether the waits of delivery are spread by chance.
    bool retryAfter = true; ///< Whether the service says when to come back.
    /// How long a request is waited for while the service is away; 0 when it is refused at once.
    milliseconds silence{5'000};

    /// Requests a second without an outage: look-up, order and status of each receipt.
    double usualLoad() const { return tills * receiptsPerHour * 3 / 3'600.0; }
    int requestsPerSecond() const;
};

/// What reached the service in a second, by what became of it.
struct Second
{
    int served = 0;
    int turnedAway = 0; ///< With HTTP code 503.
    int inVain = 0;     ///< Got no answer in time.

    int requests() const { return served + turnedAway + inVain; }
};

/// Seconds that receipts have kept their cashiers waiting.
struct Waits
{
    double mean = 0;
    double p99 = 0;
    double longest = 0;
};

struct Result
{
    std::vector<Second> seconds; ///< From `before` ahead of the outage.
    int backlog = 0;             ///< Messages waiting when the service comes back.
    /// Seconds until each till has once sent all it had; less than 0 when that takes too long.
    double emptyAfter = -1;
    double ideal = 0;    ///< The same if every spare request of the capacity were used.
    double oldest = 0;   ///< Seconds between an order and its arrival at the service, at most.
    int mostPutOffs = 0; ///< Of a message, one after the other.
    int known = 0;       ///< Look-ups of a customer after the outage that got their answer,
    int unknown = 0;     ///< and those that did not.
    Waits waitsAway, waitsAfter; ///< During the outage, and from then until all is sent.

    /// Share of the requests after the outage, until all is sent, that brought nothing.
    double wasted(const Scenario &scenario) const;
    /// The most seconds on end after the outage with more than 1.5 times the capacity.
    int longestOverload(const Scenario &scenario) const;
    /// Requests of the busiest second after the outage.
    int peak(const Scenario &scenario) const;
};

constexpr seconds before{60};           ///< Usual business ahead of the outage.
constexpr seconds longestDrain{21'600}; ///< The simulation ends at last so long after it.

Result simulate(const Scenario &scenario);

} // namespace chain
