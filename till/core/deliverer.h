#pragma once

#include "till/core/filelock.h"

#include <QList>
#include <QString>

#include <chrono>
#include <functional>

class DBQueueBroker;
struct QueuedMessage;

namespace lmmindbox {
class Interface;
class OperationResult;
} // namespace lmmindbox

namespace till {

class UnstoredMessages;

/// The queue that the loyalty plugin leaves its messages in.
QString loyaltyQueue();

/// Brings the waiting order messages to the service, one after the other in their order.
///
/// A message is removed once the service has accepted it and parked, with the service's answer,
/// once it was refused. A message that got no answer of the service stays first, and so does one
/// that the service puts off by a server error or for the till's endpoint or key, unless that goes
/// on for too long. Accepted messages are removed in groups: after a kill the service gets some of
/// them again, and knows them. At any moment only one deliverer of all processes works on a queue.
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
    /// How many accepted messages wait for their removal at most, and for how long.
    static constexpr int groupSize = 100;
    static constexpr std::chrono::milliseconds groupTime{500};

    /// Both must outlive the deliverer and serve nobody else meanwhile.
    Deliverer(DBQueueBroker &broker, lmmindbox::Interface &service);

    /// Delivers until one of the outcomes; `isStopped` is asked between two messages.
    Round deliver(const std::function<bool()> &isStopped);
    /// Delivers what is in no store, with the same outcomes.
    Round deliverUnstored(UnstoredMessages &messages, const std::function<bool()> &isStopped);
    /// Why the last round ended other than by emptying the queue.
    const QString &lastError() const { return error; }

private:
    enum class Verdict { Accepted, Refused, PutOff, NoAnswer };
    struct Answer
    {
        Verdict verdict;
        QString reason;
    };

    Round deliverAll(const std::function<bool()> &isStopped);
    bool goesOn(Round &round, const Answer &answer);
    Answer send(const QueuedMessage &message);
    static Answer judge(const lmmindbox::OperationResult &result, int deferralsBefore);
    bool settle(const QueuedMessage &message, const Answer &answer);
    bool removeAccepted();

    DBQueueBroker &broker;
    lmmindbox::Interface &service;
    FileLock lock;
    QString error;
    QList<qint64> accepted; ///< Messages that are still to be removed.
    std::chrono::steady_clock::time_point firstAccepted;
};

} // namespace till
