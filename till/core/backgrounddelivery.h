#pragma once

#include "till/core/backoff.h"

#include <QString>

#include <memory>

namespace till {

class UnstoredMessages;

/// Delivery in a thread of its own, so that the cashier never waits for it.
class BackgroundDelivery
{
public:
    /// Begins to deliver the messages of that queue file, and those that are in no store, which
    /// must outlive the delivery.
    BackgroundDelivery(const QString &queueFile, UnstoredMessages &unstored,
                       const BackoffRange &range);
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
