#include "benchmarks/measure.h"
#include "benchmarks/rows.h"

#include <QApplication>

#include <cstdio>

using namespace Qt::StringLiterals;

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const auto arguments = QApplication::arguments().mid(1);
    const auto isQuick = arguments == QStringList{u"--quick"_s};
    if (arguments.value(0) == u"--paint"_s)
        return bench::paintOnce(arguments.mid(1));
    const bench::Service service;
    if (!service.isThere()) {
        std::fputs("benchmarks: the simulator does not start\n", stderr);
        return 2;
    }
    if (arguments.value(0) == u"--count"_s && bench::count(arguments.value(1), service))
        return 0;
    if (!arguments.isEmpty() && !isQuick) {
        std::fputs("benchmarks: expected --quick, --count WHAT or nothing\n", stderr);
        return 2;
    }
    if (isQuick)
        bench::setMostSamples(3);
    bench::measureLookUp();
    bench::measureTill(service);
    bench::measurePayloads();
    bench::measureWindow(service, isQuick);
    bench::measureSales(service, isQuick ? 1'000 : 100'000);
    return 0;
}
