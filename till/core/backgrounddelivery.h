#pragma once

#include "till/core/backoff.h"

#include <QString>

#include <memory>

namespace till {

/// Delivery in a thread of its own, so that the cashier never waits for it.
class BackgroundDelivery
{
public:
    /// Begins to deliver the messages of that queue file.
    BackgroundDelivery(const QString &queueFile, const BackoffRange &range);
    /// Stops; waits at most for the answer to the message at hand.
    ~BackgroundDelivery();
    Q_DISABLE_COPY_MOVE(BackgroundDelivery)

    /// Says that a message may have come.
    void wake();

private:
    class Thread;
    std::unique_ptr<Thread> thread;
};

} // namespace till
