#pragma once

#include "till/core/pace.h"
#include "till/core/processlock.h"
#include "till/core/store.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>

namespace lmmindbox {
class Interface;
class OperationResult;
} // namespace lmmindbox

namespace till {

/// Sends the waiting order messages to the service, one by one and in order.
///
/// An accepted message is removed. A refused message is parked with the service's answer. A message
/// stays first when it got no answer, or when the answer blames the server, the endpoint or the
/// key; after a day of such answers it is parked. Among several processes one delivers from a data
/// directory. The others deliver only the messages in their own memory.
class Deliverer
{
public:
    enum class Outcome {
        Settled,     ///< A message was accepted or parked.
        Empty,       ///< Nothing is waiting.
        Unreachable, ///< A message got no answer and is retried, or the service postponed it.
        Busy,        ///< Another process is delivering.
        Unreadable,  ///< The store or the lock cannot be used.
    };
    struct Step
    {
        Outcome outcome = Outcome::Empty;
        std::chrono::milliseconds rest{0}; ///< The wait before the next step.
        bool isParked = false;             ///< Whether the message was refused.
        QString error = {};                ///< Why the step failed.
    };

    /// How often an idle deliverer looks for messages.
    static constexpr std::chrono::milliseconds idleTime{1'000};
    /// How long the service may postpone a message before the deliverer parks it.
    static constexpr std::chrono::hours longestPutOff{24};

    /// The store must outlive the deliverer. Only `wake` and `stop` may be called from any thread.
    Deliverer(Store &store, const QString &dataDirectory, const BackoffRange &range);
    ~Deliverer();
    Q_DISABLE_COPY_MOVE(Deliverer)

    /// Takes the data directory's lock. `step` takes it by itself when needed.
    [[nodiscard]] tl::expected<void, QString> acquire() { return lock.acquire(); }
    /// Sends one message if one waits.
    Step step();
    /// Sends the unsaved messages until none is left or the service does not answer.
    void deliverUnsaved();
    /// Delivers until stopped. Calls `whenIdle` from time to time while nothing waits.
    void run(const std::function<void()> &whenIdle);

    /// Tells `run` that a message may be waiting.
    void wake() { set(woken); }
    /// Ends `run`, at the latest after the answer to the message at hand.
    void stop() { set(stopped); }

    /// The lock file of that data directory.
    static QString lockFile(const QString &dataDirectory);

private:
    struct Answer
    {
        Verdict verdict = Verdict::NoAnswer;
        QString reason;
        bool isTurnedAway = false; ///< Whether the service was overloaded.
    };

    Step send(const QueuedMessage &message);
    Answer ask(const QueuedMessage &message);
    static Answer judge(const lmmindbox::OperationResult &result, const QDateTime &putOffSince);
    static Step fail(Outcome outcome, const QString &reason, std::chrono::milliseconds rest);
    bool rest(std::chrono::milliseconds time, bool isWakeable);
    void set(bool &flag);

    Store &store;
    ProcessLock lock;
    Pace pace;
    std::unique_ptr<lmmindbox::Interface> service; ///< Made in the thread that uses it.

    std::mutex mutex;
    std::condition_variable condition;
    bool stopped = false;
    bool woken = false;
};

} // namespace till
