#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace simulator {

/// Lets threads wait, and ends all their waits at once when the service stops.
class Pauses
{
public:
    /// Returns false when there is nothing to wait for any more.
    bool pause(std::chrono::nanoseconds time)
    {
        std::unique_lock lock(mutex);
        return !ended.wait_for(lock, time, [this] { return isInterrupted; });
    }

    void setInterrupted(bool on)
    {
        {
            const std::lock_guard lock(mutex);
            isInterrupted = on;
        }
        ended.notify_all();
    }

private:
    std::mutex mutex;
    std::condition_variable ended;
    bool isInterrupted = false;
};

} // namespace simulator
