#pragma once

#include <QString>

#include <functional>
#include <vector>

namespace bench {

/// One way to do the work. \return Whether it succeeded.
using Call = std::function<bool()>;

/// One row of the table and its measurement.
struct Row
{
    QString what;
    QString baseline; ///< In words.
    int samples = 1'000;
    int callsOfSample = 1;
};

/// The limit of samples in a short run, whose figures mean nothing.
void setMostSamples(int samples);

/// Seconds of one call.
double timeOf(const Row &row, const Call &call);
/// Times `ours` and the baseline in turn, so that other load disturbs both, and prints the medians
/// and their ratio. `prepare` runs before each turn, untimed.
void compare(
    const Row &row, const Call &ours, const Call &baseline,
    const std::function<void()> &prepare = [] {});
/// Prints the medians of these seconds.
void print(const Row &row, std::vector<double> ours, std::vector<double> baseline);
/// Prints a row of texts.
void print(const QString &what, const QString &ours, const QString &baseline, const QString &ratio);
/// Ends the program, because a row cannot be measured.
[[noreturn]] void fail(const QString &reason);

} // namespace bench
