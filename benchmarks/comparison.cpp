#include "benchmarks/comparison.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <ctime>

namespace bench {

namespace {

bool failed = false;

/// Seconds of this thread's processor time.
double processorTime()
{
    timespec time = {};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

/// Between two samples in proportion, so that the median of an even number is their mean.
double quantile(std::vector<double> &samples, double share)
{
    std::ranges::sort(samples);
    const auto rank = share * static_cast<double>(samples.size() - 1);
    const auto below = static_cast<size_t>(rank);
    const auto above = std::min(below + 1, samples.size() - 1);
    return std::lerp(samples[below], samples[above], rank - std::floor(rank));
}

} // namespace

bool Samples::add(int calls, const Call &call)
{
    auto reached = true;
    const auto busyBefore = processorTime();
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < calls; ++i)
        reached &= call();
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - begin;
    busy.push_back((processorTime() - busyBefore) / calls);
    wall.push_back(elapsed.count() / calls);
    return reached;
}

void compare(benchmark::State &state, int calls, const Call &ours, const Call &floor,
             const std::function<void()> &prepare)
{
    Samples oursSamples;
    Samples floorSamples;
    auto oursFirst = false;
    for ([[maybe_unused]] auto iteration : state) {
        prepare();
        // Whoever comes second finds the machine warmer.
        oursFirst = !oursFirst;
        auto reached = !oursFirst || oursSamples.add(calls, ours);
        reached &= floorSamples.add(calls, floor);
        reached &= oursFirst || oursSamples.add(calls, ours);
        if (!reached) {
            fail(state, "a call failed");
            return;
        }
        state.SetIterationTime(oursSamples.wall.back() * calls);
    }
    setCounters(state, std::move(oursSamples), std::move(floorSamples));
}

void setCounters(benchmark::State &state, Samples ours, Samples floor)
{
    state.counters["ours_cpu"] = quantile(ours.busy, 0.5);
    state.counters["floor_cpu"] = quantile(floor.busy, 0.5);
    setCounters(state, "ours", std::move(ours.wall));
    setCounters(state, "floor", std::move(floor.wall));
}

void setCounters(benchmark::State &state, const std::string &name, std::vector<double> samples)
{
    state.counters[name] = quantile(samples, 0.5);
    state.counters[name + "_p99"] = quantile(samples, 0.99);
}

void fail(benchmark::State &state, const char *reason)
{
    failed = true;
    if (!state.error_occurred())
        state.SkipWithError(reason);
}

bool anyFailed()
{
    return failed;
}

} // namespace bench
