#pragma once

#include <algorithm>
#include <chrono>
#include <mutex>
#include <optional>

namespace simulator {

/// How much a service bears: so many requests a second, one after the other. Whoever comes faster
/// waits for his turn, and is turned away when the wait would be too long. Usable from several
/// threads.
class Capacity
{
public:
    using Clock = std::chrono::steady_clock;

    static constexpr std::chrono::seconds longestWait{2};

    /// 0 bears everything.
    explicit Capacity(int requestsPerSecond)
        : turn(requestsPerSecond > 0 ? Clock::duration(std::chrono::seconds(1)) / requestsPerSecond
                                     : Clock::duration(0))
    {}

    /// Queues a request that comes now. Returns how long it waits for its turn; nothing when it is
    /// turned away.
    std::optional<Clock::duration> enter()
    {
        const std::lock_guard lock(mutex);
        const auto now = Clock::now();
        const auto begin = std::max(nextTurn, now);
        if (begin - now > longestWait)
            return {};
        nextTurn = begin + turn;
        return begin - now;
    }

private:
    const Clock::duration turn;
    std::mutex mutex;
    Clock::time_point nextTurn;
};

} // namespace simulator
