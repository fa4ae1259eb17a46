#include "benchmarks/measure.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <limits>

using namespace Qt::StringLiterals;

namespace bench {

namespace {

int mostSamples = std::numeric_limits<int>::max();

double median(std::vector<double> &samples)
{
    const auto middle = samples.begin() + static_cast<qsizetype>(samples.size() / 2);
    std::ranges::nth_element(samples, middle);
    return *middle;
}

QString textOf(double seconds)
{
    for (const auto &[unit, size] : {std::pair("s", 1.0), {"ms", 1e-3}})
        if (seconds >= size)
            return u"%1 %2"_s.arg(seconds / size, 0, 'g', 3).arg(QLatin1String(unit));
    return u"%1 µs"_s.arg(seconds / 1e-6, 0, 'f', seconds < 1e-4 ? 1 : 0);
}

} // namespace

void setMostSamples(int samples)
{
    mostSamples = samples;
}

double timeOf(const Row &row, const Call &call)
{
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < row.callsOfSample; ++i)
        if (!call())
            fail(row.what);
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
    return time.count() / row.callsOfSample;
}

void compare(const Row &row, const Call &ours, const Call &baseline,
             const std::function<void()> &prepare)
{
    std::vector<double> oursTimes;
    std::vector<double> baselineTimes;
    for (int i = 0; i < std::min(row.samples, mostSamples); ++i) {
        prepare();
        oursTimes.push_back(timeOf(row, ours));
        baselineTimes.push_back(timeOf(row, baseline));
    }
    print(row, std::move(oursTimes), std::move(baselineTimes));
}

void print(const Row &row, std::vector<double> ours, std::vector<double> baseline)
{
    const auto oursMedian = median(ours);
    const auto baselineMedian = median(baseline);
    print(row.what, textOf(oursMedian), u"%1: %2"_s.arg(row.baseline, textOf(baselineMedian)),
          QString::number(oursMedian / baselineMedian, 'f', 2));
}

void print(const QString &what, const QString &ours, const QString &baseline, const QString &ratio)
{
    std::puts(u"| %1 | %2 | %3 | %4 |"_s.arg(what, ours, baseline, ratio).toUtf8().constData());
    std::fflush(stdout);
}

void fail(const QString &reason)
{
    std::fprintf(stderr, "benchmarks: failed: %s\n", qPrintable(reason));
    std::exit(1);
}

} // namespace bench
