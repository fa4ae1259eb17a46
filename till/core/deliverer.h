#pragma once

#include "till/core/filelock.h"

#include <QString>

#include <functional>

class DBQueueBroker;
struct QueuedMessage;

namespace lmmindbox {
class Interface;
class OperationResult;
} // namespace lmmindbox

namespace till {

/// The queue that the loyalty plugin leaves its messages in.
QString loyaltyQueue();

/// Brings the waiting order messages to the service, one after the other in their order.
///
/// A message is removed once the service has accepted it and parked, with the service's answer,
/// once it was refused. A message that got no answer of the service stays first, and so does one
/// that the service puts off by a server error or for the till's endpoint or key, unless that goes
/// on for too long. At any moment only one deliverer of all processes works on a queue's file.
class Deliverer
{
public:
    enum class Outcome {
        Emptied,     ///< Nothing is waiting.
        Stopped,     ///< By the caller.
        Unreachable, ///< The first message got no answer of the service.
        Busy,        ///< Another deliverer is at work.
        Unusable,    ///< The queue's file cannot be read or written.
    };
    struct Round
    {
        Outcome outcome = Outcome::Emptied;
        int settled = 0; ///< Messages removed or parked.
        int parked = 0;
    };

    /// How often a message may be put off by the service before that counts as a refusal.
    static constexpr int mostDeferrals = 100;

    /// Both must outlive the deliverer and serve nobody else meanwhile.
    Deliverer(DBQueueBroker &broker, lmmindbox::Interface &service);

    /// Delivers until one of the outcomes; `isStopped` is asked between two messages.
    Round deliver(const std::function<bool()> &isStopped);
    /// Why the last round ended other than by emptying the queue.
    const QString &lastError() const { return error; }

private:
    enum class Verdict { Accepted, Refused, NoAnswer };
    struct Answer
    {
        Verdict verdict;
        QString reason;
    };

    Answer send(const QueuedMessage &message);
    Answer judge(const lmmindbox::OperationResult &result, qint64 message);
    bool isPutOff(int httpCode, qint64 message);
    bool settle(const QueuedMessage &message, const Answer &answer);

    DBQueueBroker &broker;
    lmmindbox::Interface &service;
    FileLock lock;
    QString error;
    qint64 deferredMessage = 0;
    int deferrals = 0; ///< Of that message, one after the other.
};

} // namespace till
