#pragma once

#include "till/core/backoff.h"
#include "till/core/deliverer.h"

#include <chrono>

namespace till {

/// How long the standing delivery rests after each round: longer from one failed round to the
/// next, or as long as the service has asked for. Knows no clock and rests nowhere itself.
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

    /// `asked` is how much longer the service wants to be left alone, 0 for no such wish.
    Rest after(const Deliverer::Round &round, std::chrono::milliseconds asked);

private:
    Backoff backoff;
};

} // namespace till
