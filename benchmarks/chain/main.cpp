#include "benchmarks/chain/chain.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

/// Reads a number; ends the program with a message when it is none.
int number(const QCommandLineParser &parser, const QString &option, int least, int most)
{
    bool isNumber = false;
    const auto value = parser.value(option).toInt(&isNumber);
    if (isNumber && value >= least && value <= most)
        return value;
    std::fprintf(stderr, "chain: --%s must be a number from %d to %d, not '%s'\n",
                 qPrintable(option), least, most, qPrintable(parser.value(option)));
    std::exit(2);
}

chain::Scenario scenarioOf(const QCommandLineParser &parser)
{
    constexpr int million = 1'000'000;
    return {.tills = number(parser, u"tills"_s, 1, million),
            .receiptsPerHour = number(parser, u"receipts-per-hour"_s, 1, 3'600),
            .outage = chain::seconds(number(parser, u"outage"_s, 1, 86'400)),
            .capacity = number(parser, u"capacity"_s, 0, million),
            .seed = static_cast<unsigned>(number(parser, u"seed"_s, 0, million)),
            .jitter = !parser.isSet(u"no-jitter"_s),
            .retryAfter = !parser.isSet(u"no-retry-after"_s),
            .silence = chain::milliseconds(number(parser, u"silence"_s, 0, 5'000))};
}

QJsonObject waitsOf(const chain::Waits &waits)
{
    return {{u"mean"_s, waits.mean}, {u"p99"_s, waits.p99}, {u"longest"_s, waits.longest}};
}

QJsonObject report(const chain::Scenario &scenario, const chain::Result &result)
{
    return {{u"tills"_s, scenario.tills},
            {u"receiptsPerHour"_s, scenario.receiptsPerHour},
            {u"outage"_s, static_cast<int>(scenario.outage.count())},
            {u"capacity"_s, scenario.requestsPerSecond()},
            {u"usualLoad"_s, scenario.usualLoad()},
            {u"seed"_s, static_cast<int>(scenario.seed)},
            {u"jitter"_s, scenario.jitter},
            {u"retryAfter"_s, scenario.retryAfter},
            {u"backlog"_s, result.backlog},
            {u"emptyAfter"_s, result.emptyAfter},
            {u"ideal"_s, result.ideal},
            {u"oldest"_s, result.oldest},
            {u"wasted"_s, result.wasted(scenario)},
            {u"longestOverload"_s, result.longestOverload(scenario)},
            {u"peak"_s, result.peak(scenario)},
            {u"mostPutOffs"_s, result.mostPutOffs},
            {u"customersUnknown"_s,
             result.unknown / std::max(1.0, 0.0 + result.known + result.unknown)},
            {u"waitsAway"_s, waitsOf(result.waitsAway)},
            {u"waitsAfter"_s, waitsOf(result.waitsAfter)}};
}

bool writeCurve(const QString &name, const chain::Scenario &scenario, const chain::Result &result)
{
    QByteArray lines("second,served,turnedAway,inVain\n"); // second 0: the service is back
    auto second = -static_cast<int>((chain::before + scenario.outage).count());
    for (const auto &[served, turnedAway, inVain] : result.seconds)
        lines += u"%1,%2,%3,%4\n"_s.arg(second++).arg(served).arg(turnedAway).arg(inVain).toUtf8();
    QFile file(name);
    return file.open(QIODevice::WriteOnly) && file.write(lines) == lines.size() && file.flush();
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"How a chain of tills comes back after its service was away, in virtual time. Prints the "
        "figures as JSON."_s);
    parser.addHelpOption();
    parser.addOptions({
        {u"tills"_s, u"Default: 10000."_s, u"number"_s, u"10000"_s},
        {u"receipts-per-hour"_s, u"Of each till. Default: 30."_s, u"number"_s, u"30"_s},
        {u"outage"_s, u"How long the service is away. Default: 7200."_s, u"seconds"_s, u"7200"_s},
        {u"capacity"_s,
         u"Requests a second that the service bears. Default: 0, twice the usual load."_s,
         u"number"_s, u"0"_s},
        {u"seed"_s, u"Makes the run another one. Default: 1."_s, u"number"_s, u"1"_s},
        {u"no-jitter"_s, u"The tills' waits are not spread by chance."_s},
        {u"no-retry-after"_s, u"The service does not say when to come back."_s},
        {u"silence"_s,
         u"How long a request waits for an answer while the service is away; 0 when it is refused "
         "at once. Default: 5000."_s,
         u"milliseconds"_s, u"5000"_s},
        {u"curve"_s, u"Writes the requests of each second to this CSV file."_s, u"file"_s},
    });
    parser.process(application);
    const auto scenario = scenarioOf(parser);
    if (scenario.requestsPerSecond() <= scenario.usualLoad()) {
        std::fprintf(stderr, "chain: --capacity must be above the usual load, %g a second\n",
                     scenario.usualLoad());
        return 2;
    }
    const auto result = chain::simulate(scenario);
    std::fputs(QJsonDocument(report(scenario, result)).toJson().constData(), stdout);
    if (parser.isSet(u"curve"_s) && !writeCurve(parser.value(u"curve"_s), scenario, result)) {
        std::fprintf(stderr, "chain: %s cannot be written\n", qPrintable(parser.value(u"curve"_s)));
        return 1;
    }
    return 0;
}
