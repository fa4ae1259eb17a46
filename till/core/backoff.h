#pragma once

#include <chrono>
#include <random>

namespace till {

/// How long to wait after a failure: first, and at most.
struct BackoffRange
{
    std::chrono::milliseconds first{1'000};
    std::chrono::milliseconds longest{60'000};
};

/// Waits that double from one failure to the next, up to the longest, each a fifth longer or
/// shorter by chance, so that the tills of a shop do not all come back at once.
class Backoff
{
public:
    explicit Backoff(const BackoffRange &range);

    /// The wait after one more failure.
    std::chrono::milliseconds next();
    /// At least that time, as somebody has asked for; up to a fifth longer by chance.
    std::chrono::milliseconds atLeast(std::chrono::milliseconds time);
    /// After a success the next wait is the first one again.
    void reset();

private:
    BackoffRange range;
    std::chrono::milliseconds current;
    std::minstd_rand random;
};

} // namespace till
