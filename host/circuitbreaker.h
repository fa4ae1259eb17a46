#pragma once

#include <algorithm>
#include <chrono>

/// Keeps a caller from waiting again and again for a service that does not answer.
///
/// After a failure nothing may be sent for a while that doubles from one failed trial to the next.
/// When it has passed, one request is the next trial; an answer ends everything. The tills of a
/// shop come at the times of their own customers, so these waits need no spreading by chance.
/// Knows no clock: whoever asks says what time it is.
class CircuitBreaker
{
public:
    using Time = std::chrono::steady_clock::time_point;
    using Duration = std::chrono::milliseconds;

    /// How long nothing is sent: after the first failure, and at most. With `first` 0 or less
    /// everything may always be sent.
    struct Range
    {
        Duration first{1'000};
        Duration longest{30'000};
    };

    explicit CircuitBreaker(const Range &range)
        : range(range)
    {}

    /// Whether a request may be sent now. Each one that may is to be followed by one of the calls
    /// below.
    [[nodiscard]] bool allows(Time now)
    {
        if (!isOpen())
            return true;
        if (isTrying || now < openUntil)
            return false;
        isTrying = true;
        return true;
    }

    /// The service has answered.
    void noteAnswer()
    {
        isTrying = false;
        wait = {};
    }
    /// The service let somebody wait in vain, be it by a request that needed no leave.
    void noteFailure(Time now)
    {
        if (!isOpen())
            wait = std::max(range.first, Duration::zero());
        else if (now >= openUntil)
            wait = std::max(range.first, std::min(wait * 2, range.longest));
        openUntil = now + wait;
        isTrying = false;
    }
    /// The request ended in a way that says neither.
    void noteNothing() { isTrying = false; }

    /// Whether the service has not answered since a failure.
    bool isOpen() const { return wait > Duration::zero(); }

private:
    Range range;
    Duration wait{0};
    Time openUntil;
    bool isTrying = false;
};
