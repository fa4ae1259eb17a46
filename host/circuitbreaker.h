#pragma once

#include <algorithm>
#include <chrono>

/// Keeps a caller from waiting again and again for a service that does not answer.
///
/// After a failure nothing may be sent for a while that doubles from one failed trial to the next.
/// When it has passed, one request is the next trial, which is not waited for as long as usual; an
/// answer ends everything. The tills of a shop come at the times of their own customers, so these
/// waits need no spreading by chance. Knows no clock: whoever asks says what time it is.
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

    /// How long a request may be waited for that is sent now, `usual` at most; 0 when it may not be
    /// sent. Each one that may is to be followed by one of the calls below.
    ///
    /// Three trials get the first of those times, the next ones twice as long each: a service that
    /// stays silent costs little, and one that has become slow gets all of `usual` in the end. A
    /// request that needed no leave and failed says that it is not slowness: then three get little
    /// again.
    [[nodiscard]] Duration patience(Time now, Duration usual)
    {
        if (!isOpen())
            return usual;
        if (isTrying || now < openUntil)
            return Duration::zero();
        isTrying = true;
        return std::min(usual, range.first * (1 << std::clamp(failedTrials - 2, 0, mostDoublings)));
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
        failedTrials = isTrying ? failedTrials + 1 : 0;
        isTrying = false;
    }
    /// The request ended in a way that says neither.
    void noteNothing() { isTrying = false; }

    /// Whether the service has not answered since a failure.
    bool isOpen() const { return wait > Duration::zero(); }

private:
    static constexpr int mostDoublings = 20;

    Range range;
    Duration wait{0};
    Time openUntil;
    bool isTrying = false;
    int failedTrials = 0; ///< Since the last request that failed and was no trial.
};
