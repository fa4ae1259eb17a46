#pragma once

#include <chrono>
#include <functional>
#include <optional>

namespace till {

/// The shortest and the longest wait after a failure.
struct BackoffRange
{
    std::chrono::milliseconds first{1'000};
    std::chrono::milliseconds longest{30'000};
};

/// Gives a random number, at least 0 and below 1.
using Chance = std::function<double()>;

/// A random source seeded by the system, different for each till.
Chance ownChance();

/// Computes how long a delivery rests before its next message. Uses no clock and never waits.
///
/// A till catches up from its start, and from each failure, until nothing waits. A failure doubles
/// the rest. Each answer moves the rest towards 35 times the delay that load added to the answer;
/// the step is larger from farther away. An overloaded service answers late, so the tills of a
/// chain slow down before it refuses requests. After such a refusal the next five answers change
/// the rest by at most a tenth each. A random fifth more or less keeps the tills from sending at
/// the same time.
class Pace
{
public:
    using Duration = std::chrono::milliseconds;

    /// The shortest rest while the till catches up, before the random fifth.
    static constexpr Duration shortestRest{100};

    /// The first rest is as long as the one after three failures.
    explicit Pace(const BackoffRange &range = {}, Chance chance = ownChance());

    /// The rest after a message was accepted or parked; `took` is the time of the answer. No rest
    /// outside of catching up, else at most twice the longest one after a failure. The time without
    /// load is the shortest so far, or half of it when all answers came while catching up.
    Duration afterAnswer(Duration took);
    /// The rest after a message got no answer, or the store failed.
    Duration afterFailure();
    /// The rest after an overloaded service turned a message away. `asked` is the wait that the
    /// service asked for, or 0.
    Duration afterRefusal(Duration asked);
    /// Ends the catching up, because nothing is left to send.
    void noteEmpty();

private:
    using Exact = std::chrono::duration<double, std::milli>;

    Duration spread(Exact time) const;

    Exact first;
    Exact longest;
    Exact current; ///< The next failure's rest, before the random fifth.
    Chance chance;
    bool catchingUp = true;
    int carefulFor = 0; ///< Answers that may change the rest by a tenth only.
    std::optional<Duration> shortest;
    bool isShortestSure = false; ///< Whether an answer came outside of catching up.
};

} // namespace till
