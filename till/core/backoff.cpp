#include "till/core/backoff.h"

#include <algorithm>

namespace till {

Backoff::Backoff(const BackoffRange &range)
    : range(range)
    , current(range.first)
    , random(std::random_device()())
{}

std::chrono::milliseconds Backoff::next()
{
    std::uniform_int_distribution percent(80, 120);
    const auto wait = current * percent(random) / 100;
    current = std::min(current * 2, range.longest);
    return wait;
}

std::chrono::milliseconds Backoff::atLeast(std::chrono::milliseconds time)
{
    std::uniform_int_distribution percent(100, 120);
    return time * percent(random) / 100;
}

void Backoff::reset()
{
    current = range.first;
}

} // namespace till
