#include "faultydisk.h"
#include "plan.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QHashSeed>
#include <QLoggingCategory>
#include <QRegularExpression>

#include <cstdio>
#include <ctime>
#include <random>

namespace {

using namespace Qt::StringLiterals;
using day::Step;

std::vector<Step> plan(uint64_t seed, int steps)
{
    day::Random random{seed};
    std::vector<Step> plan;
    while (plan.size() < static_cast<size_t>(steps)) {
        const auto action =
            static_cast<size_t>(random.below(static_cast<int>(day::actions.size())));
        if (random.below(24) < day::actions[action].weight) // the highest one
            plan.push_back({action, random()});
    }
    return plan;
}

/// The fewest of the steps that still fail in the same way.
std::vector<Step> cutDown(std::vector<Step> steps, const QString &finding)
{
    const auto kind = [](QString text) {
        return text.remove(QRegularExpression(u"^[^:]*: |[0-9.]+"_s));
    };
    for (auto size = steps.size() / 2; size > 0; size /= 2) {
        for (size_t begin = 0; begin + size <= steps.size();) {
            auto fewer = steps;
            const auto first = fewer.begin() + static_cast<long>(begin);
            fewer.erase(first, first + static_cast<long>(size));
            if (kind(day::findingOf(fewer)) == kind(finding))
                steps = fewer;
            else
                begin += size;
        }
    }
    return steps;
}

} // namespace

int main(int argc, char *argv[])
{
    QHashSeed::setDeterministicGlobalSeed();
    const QCoreApplication application(argc, argv);
    QCommandLineParser options;
    options.addHelpOption();
    options.addOptions(
        {{u"seed"_s, u"The first day's seed. Default: a random one."_s, u"N"_s},
         {u"steps"_s, u"The steps of a day."_s, u"M"_s, u"500"_s},
         {u"seconds"_s, u"Tries one day after another for so long."_s, u"S"_s, u"0"_s},
         {u"verbose"_s, u"Prints the steps."_s}});
    options.process(application);
    const auto isTold = options.isSet(u"verbose"_s);
    if (!isTold)
        QLoggingCategory::setFilterRules(u"*=false"_s);
    const auto steps = options.value(u"steps"_s).toInt();
    unsigned long long seed =
        options.isSet(u"seed"_s) ? options.value(u"seed"_s).toULongLong() : std::random_device()();
    std::printf("seed %llu\n", seed);
    std::fflush(stdout); // a crash would take it along
    const auto begin = std::time(nullptr);
    long done = 0;
    do {
        const auto today = plan(seed, steps);
        if (const auto finding = day::findingOf(today, isTold); !finding.isEmpty()) {
            std::printf("--seed %llu --steps %d: %s\n", seed, steps, qPrintable(finding));
            std::fflush(stdout);
            const auto fewest = cutDown(today, finding);
            std::printf("the fewest steps, %zu, give: %s\n", fewest.size(),
                        qPrintable(day::findingOf(fewest, true)));
            return 1;
        }
        done += steps;
        ++seed;
    } while (std::time(nullptr) - begin < options.value(u"seconds"_s).toInt());
    std::printf("%ld steps without a finding, %.0f in a second of the processor\n", done,
                static_cast<double>(done) * CLOCKS_PER_SEC / static_cast<double>(std::clock()));
    return 0;
}
