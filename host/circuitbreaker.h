#pragma once

#include <algorithm>
#include <chrono>

/// Saves a caller from waiting repeatedly for a service that does not answer.
///
/// A failure opens the breaker: it blocks requests for a time that doubles with each further
/// failure. Then it lets one trial request through, which waits a tenth of the usual time. An
/// answer closes the breaker. A delivery's requests do not ask the breaker, but their outcomes
/// count too. The caller supplies the time.
class CircuitBreaker
{
public:
    using Time = std::chrono::steady_clock::time_point;
    using Duration = std::chrono::milliseconds;

    /// How long requests are blocked: after the first failure, and at most. With `first` 0 or less
    /// the breaker never blocks.
    struct Range
    {
        Duration first{1'000};
        Duration longest{30'000};
    };

    explicit CircuitBreaker(const Range &range)
        : range(range)
    {}

    /// How long a request sent now may wait for its answer, at most `usual`; 0 when it is blocked.
    [[nodiscard]] Duration patience(Time now, Duration usual)
    {
        constexpr int trialShare = 10;
        if (wait <= Duration::zero())
            return usual;
        if (now < openUntil)
            return Duration::zero();
        openUntil = now + wait; // one trial at a time
        return std::max(usual / trialShare, Duration(1));
    }

    /// The service has answered.
    void noteAnswer() { wait = {}; }
    /// A request got no answer.
    void noteFailure(Time now)
    {
        wait = std::max(range.first, std::min(wait * 2, range.longest));
        openUntil = now + wait;
    }

private:
    Range range;
    Duration wait{0};
    Time openUntil;
};
