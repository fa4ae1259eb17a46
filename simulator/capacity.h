#pragma once

#include <algorithm>
#include <chrono>
#include <mutex>

namespace simulator {

/// How much a service bears: so many requests a second, one after the other. Whoever comes faster
/// waits for his turn, and is turned away when the wait would be too long. Usable from several
/// threads.
class Capacity
{
public:
    static constexpr std::chrono::seconds longestWait{2};

    /// 0 bears everything.
    explicit Capacity(int requestsPerSecond)
        : turn(requestsPerSecond > 0
                   ? std::chrono::nanoseconds(std::chrono::seconds(1)) / requestsPerSecond
                   : std::chrono::nanoseconds(0))
    {}

    /// Queues a request that comes now. Returns how long it waits for its turn; one that would
    /// wait for more than `longestWait` is turned away.
    std::chrono::nanoseconds enter()
    {
        const std::lock_guard lock(mutex);
        const auto now = std::chrono::steady_clock::now();
        const auto begin = std::max(nextTurn, now);
        if (begin - now <= longestWait)
            nextTurn = begin + turn;
        return begin - now;
    }

private:
    const std::chrono::nanoseconds turn;
    std::mutex mutex;
    std::chrono::steady_clock::time_point nextTurn;
};

} // namespace simulator
