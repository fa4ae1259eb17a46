#include "simulator/programoptions.h"
#include "simulator/simulator.h"

#include <QCoreApplication>
#include <QSaveFile>

#include <csignal>
#include <cstdio>
#include <mutex>

namespace {

void printLine(const QString &text)
{
    std::fputs((text + u'\n').toUtf8().constData(), stdout);
    std::fflush(stdout);
}

int fail(const QString &reason, int code)
{
    std::fputs(QStringLiteral("simulator: %1\n").arg(reason).toUtf8().constData(), stderr);
    return code;
}

bool writePort(const QString &path, int port)
{
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(QByteArray::number(port) + '\n') > 0 &&
           file.commit();
}

} // namespace

int main(int argc, char *argv[])
{
    // Blocked before any thread starts, so that all of them leave the signals to sigwait.
    sigset_t endSignals;
    sigemptyset(&endSignals);
    sigaddset(&endSignals, SIGINT);
    sigaddset(&endSignals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &endSignals, nullptr);

    const QCoreApplication application(argc, argv);
    auto options = simulator::readProgramOptions(QCoreApplication::arguments());
    if (!options.error.isEmpty())
        return fail(options.error + QStringLiteral("; --help says more"), 2);
    if (!options.help.isEmpty()) {
        std::fputs(options.help.toUtf8().constData(), stdout);
        return 0;
    }
    std::mutex printing;
    options.simulator.print = [&printing](const QString &text) {
        const std::lock_guard lock(printing);
        printLine(text);
    };
    simulator::Simulator simulator(options.simulator);
    // The address comes first, though requests may come before it is printed.
    std::unique_lock addressFirst(printing);
    if (!simulator.start())
        return fail(simulator.errorString(), 1);
    printLine(QStringLiteral("listening on %1").arg(simulator.url()));
    addressFirst.unlock();
    if (!options.portFile.isEmpty() && !writePort(options.portFile, simulator.port()))
        return fail(QStringLiteral("port file %1 cannot be written").arg(options.portFile), 1);

    int signal = 0;
    sigwait(&endSignals, &signal);
    return 0;
}
