#include "benchmarks/comparison.h"
#include "benchmarks/setup.h"

#include <benchmark/benchmark.h>

#include <QCommandLineParser>
#include <QCoreApplication>

#include <cstdio>

namespace {

int refuse(const QString &reason)
{
    std::fputs(QStringLiteral("benchmarks: %1\n").arg(reason).toUtf8().constData(), stderr);
    return 2;
}

} // namespace

int main(int argc, char *argv[])
{
    // Takes its own options, "--benchmark_...", out of the arguments.
    benchmark::Initialize(&argc, argv);
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    const QCommandLineOption quick(QStringLiteral("quick"),
                                   QStringLiteral("Scales the long benchmarks down to seconds."));
    const QCommandLineOption load(
        QStringLiteral("load"),
        QStringLiteral("Loads the plugin and prints the seconds that it took."),
        QStringLiteral("file"));
    const QCommandLineOption counted(
        QStringLiteral("count"),
        QStringLiteral("Does what bench::count knows for valgrind to count."),
        QStringLiteral("what"));
    parser.addOptions({quick, load, counted});
    if (!parser.parse(QCoreApplication::arguments()) || !parser.positionalArguments().isEmpty())
        return refuse(QStringLiteral(
            "expected --quick, --load FILE, --count WHAT or --benchmark_... options"));
    if (parser.isSet(load))
        return bench::loadOnce(parser.value(load));

    bench::Setup setup(parser.isSet(quick));
    if (!setup.getError().isEmpty())
        return refuse(setup.getError());
    if (parser.isSet(counted))
        return bench::count(parser.value(counted), setup) ? 0 : refuse(counted.description());
    // The report looks for fewer figures then.
    benchmark::AddCustomContext("quick", setup.isQuick() ? "yes" : "no");
    bench::registerExchanges(setup);
    bench::registerPayloads(setup);
    bench::registerAnswers();
    bench::registerMasks();
    bench::registerQueue(setup);
    bench::registerSale(setup);
    bench::registerSyncs(setup);
    bench::registerProcess(setup);
    const auto count = benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return count == 0 || bench::anyFailed() ? 1 : 0;
}
