#pragma once

#include "till/core/backoff.h"
#include "till/core/deliveryloop.h"

#include <QString>

#include <condition_variable>
#include <mutex>
#include <thread>

namespace till {

class UnstoredMessages;

/// Delivery in a thread of its own, so that the cashier never waits for it.
class BackgroundDelivery final : private DeliveryPause
{
public:
    /// Begins to deliver the messages of that queue file, and those that are in no store, which
    /// must outlive the delivery.
    BackgroundDelivery(const QString &queueFile, UnstoredMessages &unstored,
                       const BackoffRange &range);
    /// Stops; waits at most for the answer to the message at hand.
    ~BackgroundDelivery() override;
    Q_DISABLE_COPY_MOVE(BackgroundDelivery)

    /// Says that a message may have come.
    void wake() { set(woken); }

private:
    bool isStopped() override;
    void rest(std::chrono::milliseconds time, bool wakeable) override;
    void deliver(const QString &queueFile, UnstoredMessages &unstored, const BackoffRange &range);
    void set(bool &flag);

    std::mutex mutex;
    std::condition_variable condition;
    bool stopped = false;
    bool woken = false;
    std::thread thread; // the last member: it uses the others
};

} // namespace till
