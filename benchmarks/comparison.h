#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <string>
#include <vector>

namespace bench {

/// One way to the end that is measured. \return Whether it got there.
using Call = std::function<bool()>;

/// What calls took.
struct Samples
{
    /// Times one more sample. \return Whether every call got there.
    bool add(int calls, const Call &call);

    std::vector<double> wall; ///< Seconds of one call.
    std::vector<double> busy; ///< Seconds of this thread's processor time in it.
};

/// Times `ours` and its floor in turn, `calls` calls a sample, so that a noisy machine disturbs
/// both alike; `prepare` is called before each turn and not timed. The benchmark's counters become
/// the medians and the 99th percentiles of one call and the medians of the processor time in it, in
/// seconds: "ours", "ours_p99", "ours_cpu", "floor", "floor_p99", "floor_cpu".
void compare(
    benchmark::State &state, int calls, const Call &ours, const Call &floor,
    const std::function<void()> &prepare = [] {});

/// Sets the counters of `compare`.
void setCounters(benchmark::State &state, Samples ours, Samples floor);
/// Sets the counters "NAME" and "NAME_p99" to the median and the 99th percentile.
void setCounters(benchmark::State &state, const std::string &name, std::vector<double> samples);

/// Ends a benchmark whose figure would mean nothing. The first reason is the one reported.
void fail(benchmark::State &state, const char *reason);

/// Whether `fail` was called for any benchmark.
bool anyFailed();

} // namespace bench
