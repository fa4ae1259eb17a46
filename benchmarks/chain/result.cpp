#include "benchmarks/chain/chain.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace chain {

namespace {

std::span<const Second> afterOutage(const Result &result, const Scenario &scenario)
{
    return std::span(result.seconds).subspan((before + scenario.outage).count());
}

} // namespace

int Scenario::requestsPerSecond() const
{
    return capacity > 0 ? capacity : static_cast<int>(std::ceil(2 * usualLoad()));
}

double Result::wasted(const Scenario &scenario) const
{
    double all = 0;
    double wasted = 0;
    for (const auto &second : afterOutage(*this, scenario)) {
        all += second.requests();
        wasted += second.turnedAway + second.inVain;
    }
    return all > 0 ? wasted / all : 0;
}

int Result::longestOverload(const Scenario &scenario) const
{
    int longest = 0;
    int current = 0;
    for (const auto &second : afterOutage(*this, scenario)) {
        current = second.requests() > 1.5 * scenario.requestsPerSecond() ? current + 1 : 0;
        longest = std::max(longest, current);
    }
    return longest;
}

int Result::peak(const Scenario &scenario) const
{
    int peak = 0;
    for (const auto &second : afterOutage(*this, scenario))
        peak = std::max(peak, second.requests());
    return peak;
}

} // namespace chain
