#pragma once

#include "till/core/deliverer.h"
#include "till/core/deliveryrhythm.h"

#include <QtGlobal>

#include <chrono>
#include <functional>

namespace till {

class UnstoredMessages;

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

/// The standing delivery: looks for messages, and rests after each round.
class DeliveryLoop
{
public:
    /// The references must outlive the loop.
    DeliveryLoop(Deliverer &deliverer, const Backoff &backoff, DeliveryPause &pause);

    /// Has messages delivered as well that are in no store.
    void setUnstoredMessages(UnstoredMessages *messages) { unstored = messages; }
    /// Called before each message is sent.
    void setBeforeEach(std::function<void()> callback) { beforeEach = std::move(callback); }
    /// Called between rounds while nothing is waiting.
    void setWhenIdle(std::function<void()> callback) { whenIdle = std::move(callback); }

    /// Delivers until stopped.
    void run();
    /// Delivers until the queue is empty, a round fails or it is stopped; waits for another
    /// deliverer to finish. \return Whether nothing is waiting and nothing had to be parked.
    bool runOnce();

private:
    Deliverer::Round deliver();
    /// To be asked before each message of a round: whether the round is to end.
    std::function<bool()> roundsEnd();

    Deliverer &deliverer;
    DeliveryRhythm rhythm;
    DeliveryPause &pause;
    UnstoredMessages *unstored = nullptr;
    std::function<void()> beforeEach = [] {};
    std::function<void()> whenIdle = [] {};
};

} // namespace till
