#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <stop_token>

namespace simulator {

/// Waits, at most until the service stops. Returns whether it goes on.
inline bool pause(const std::stop_token &stop, std::chrono::nanoseconds time)
{
    std::mutex mutex;
    std::unique_lock lock(mutex);
    std::condition_variable_any().wait_for(lock, stop, time, [] { return false; });
    return !stop.stop_requested();
}

} // namespace simulator
