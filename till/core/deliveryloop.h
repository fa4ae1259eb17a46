#pragma once

#include "till/core/backoff.h"

#include <QtGlobal>

#include <chrono>

namespace till {

class Deliverer;

/// Where a delivery rests between two rounds and hears that it is to end.
class DeliveryPause
{
public:
    DeliveryPause() = default;
    virtual ~DeliveryPause();
    Q_DISABLE_COPY_MOVE(DeliveryPause)

    virtual bool isStopped() = 0;
    /// Returns after that time, at once when stopped, and early when `wakeable` and a new message
    /// has come.
    virtual void rest(std::chrono::milliseconds time, bool wakeable) = 0;
};

/// The standing delivery: looks for messages, and waits longer after each failed round.
class DeliveryLoop
{
public:
    static constexpr std::chrono::milliseconds idleTime{1'000};

    /// The references must outlive the loop.
    DeliveryLoop(Deliverer &deliverer, const Backoff &backoff, DeliveryPause &pause);

    /// Delivers until stopped.
    void run();
    /// Delivers until the queue is empty, a round fails or it is stopped; waits for another
    /// deliverer to finish. \return Whether nothing is waiting and nothing had to be parked.
    bool runOnce();

private:
    Deliverer &deliverer;
    Backoff backoff;
    DeliveryPause &pause;
};

} // namespace till
