#pragma once

#include <chrono>
#include <functional>

namespace till {

/// How long to wait after a failure: first, and at most.
struct BackoffRange
{
    std::chrono::milliseconds first{1'000};
    std::chrono::milliseconds longest{60'000};
};

/// A number by chance, from 0 to below 1.
using Chance = std::function<double()>;

/// A source of its own that no other till shares.
Chance ownChance();

/// Waits that double from one failure to the next, up to the longest, and become shorter step by
/// step when things go well again; each a fifth longer or shorter by chance, so that the tills of a
/// chain do not all come back at once.
class Backoff
{
public:
    explicit Backoff(const BackoffRange &range, Chance chance = ownChance());

    /// The wait after one more failure.
    std::chrono::milliseconds next();
    /// At least that time, as somebody has asked for; up to a fifth longer by chance.
    std::chrono::milliseconds atLeast(std::chrono::milliseconds time);
    /// The wait after a success that took so long, while more is to follow: a tenth shorter or
    /// longer than the last one, to come nearer to 25 times what it took.
    ///
    /// A service with too much to do answers late. Tills that rest in proportion to that come less
    /// often before it has to turn one away, and no till has to know how many others there are.
    std::chrono::milliseconds ease(std::chrono::milliseconds took);
    /// The next wait is the first one again.
    void reset();

private:
    std::chrono::milliseconds spread(std::chrono::milliseconds time) const;

    BackoffRange range;
    std::chrono::milliseconds current;
    Chance chance;
};

} // namespace till
