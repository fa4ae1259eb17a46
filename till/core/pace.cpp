#include "till/core/pace.h"

#include <algorithm>
#include <cmath>
#include <random>
#include <utility>

namespace till {

Chance ownChance()
{
    return [random = std::minstd_rand(std::random_device()())]() mutable {
        return std::uniform_real_distribution()(random);
    };
}

Pace::Pace(const BackoffRange &range, Chance chance)
    : first(std::max(range.first, shortestRest))
    , longest(std::max<Exact>(range.longest, first))
    , current(std::min(first * 8, longest))
    , chance(std::move(chance))
{}

Pace::Duration Pace::afterAnswer(Duration took)
{
    shortest = std::min(took, shortest.value_or(took));
    if (!catchingUp) {
        isShortestSure = true;
        return Duration::zero();
    }
    constexpr int restPerAddedTime = 35;
    constexpr double nearing = 0.08;
    const Exact added = took - (isShortestSure ? *shortest : *shortest / 2);
    const auto wanted = std::clamp<Exact>(added * restPerAddedTime, shortestRest, longest * 2);
    auto step = std::pow(wanted / current, nearing);
    if (carefulFor > 0) {
        --carefulFor;
        step = std::clamp(step, 0.9, 1.1);
    }
    current *= step;
    return spread(current);
}

Pace::Duration Pace::afterFailure()
{
    catchingUp = true;
    const auto rest = spread(current);
    current = std::max(current, std::min(current * 2, longest));
    return rest;
}

Pace::Duration Pace::afterRefusal(Duration asked)
{
    constexpr int careful = 5;
    carefulFor = careful;
    const auto spreadAfterAsked = std::chrono::ceil<Duration>(asked * (1 + 0.2 * chance()));
    return std::max(afterFailure(), spreadAfterAsked);
}

void Pace::noteEmpty()
{
    catchingUp = false;
    carefulFor = 0;
    current = first;
}

Pace::Duration Pace::spread(Exact time) const
{
    return std::chrono::round<Duration>(time * (0.8 + 0.4 * chance()));
}

} // namespace till
