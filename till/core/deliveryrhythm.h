#pragma once

#include "till/core/backoff.h"
#include "till/core/deliverer.h"

#include <chrono>

namespace till {

/// When the standing delivery goes on. Knows no clock and rests nowhere itself.
///
/// After a failed round it rests, longer from one to the next and at least as long as the service
/// has asked for. From then on it catches up, one message a round, until nothing waits: behind an
/// outage stand all the tills of a chain, and the service has to bear them beside the sales.
class DeliveryRhythm
{
public:
    static constexpr std::chrono::milliseconds idleTime{1'000};

    struct Rest
    {
        std::chrono::milliseconds time;
        bool isWakeable; ///< Whether a new message ends it early.
    };

    explicit DeliveryRhythm(const Backoff &backoff);

    /// How long to rest after a round that `took` so long. `asked` is how much longer the service
    /// wants to be left alone, 0 for no such wish.
    Rest after(const Deliverer::Round &round, std::chrono::milliseconds took,
               std::chrono::milliseconds asked);
    /// Whether the next round is to bring one message only.
    bool isCatchingUp() const { return catchingUp; }

private:
    Backoff backoff;
    bool catchingUp = false;
};

} // namespace till
