#include "till/core/backoff.h"

#include <algorithm>
#include <random>
#include <utility>

namespace till {

namespace {

std::chrono::milliseconds times(std::chrono::milliseconds time, double factor)
{
    return std::chrono::round<std::chrono::milliseconds>(time * factor);
}

} // namespace

Chance ownChance()
{
    return [random = std::minstd_rand(std::random_device()())]() mutable {
        return std::uniform_real_distribution()(random);
    };
}

Backoff::Backoff(const BackoffRange &range, Chance chance)
    : range(range)
    , current(range.first)
    , chance(std::move(chance))
{}

std::chrono::milliseconds Backoff::next()
{
    const auto wait = spread(current);
    current = std::min(current * 2, range.longest);
    return wait;
}

std::chrono::milliseconds Backoff::ease(std::chrono::milliseconds took)
{
    constexpr int restPerAnswer = 25;
    const auto wanted = std::min(took * restPerAnswer, range.longest);
    current = std::clamp(wanted, times(current, 0.9), times(current, 1.1));
    return spread(current);
}

std::chrono::milliseconds Backoff::atLeast(std::chrono::milliseconds time)
{
    return times(time, 1 + 0.2 * chance());
}

void Backoff::reset()
{
    current = range.first;
}

std::chrono::milliseconds Backoff::spread(std::chrono::milliseconds time) const
{
    return times(time, 0.8 + 0.4 * chance());
}

} // namespace till
