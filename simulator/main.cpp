#include "simulator/presets.h"
#include "simulator/simulator.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QSaveFile>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <mutex>

using namespace Qt::StringLiterals;
using simulator::Options;

namespace {

QString description()
{
    QFile file(u":/simulator/help.txt"_s);
    auto text = file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    for (const auto &preset : simulator::presets())
        text += u"  %1  %2\n"_s.arg(preset.mobilePhone, preset.description);
    return text.trimmed();
}

int fail(const QString &reason, int code)
{
    std::fputs(u"simulator: %1\n"_s.arg(reason).toUtf8().constData(), stderr);
    return code;
}

[[noreturn]] void refuse(const QString &reason)
{
    std::exit(fail(reason + u"; --help says more"_s, 2));
}

void addOptions(QCommandLineParser &parser)
{
    const Options usual;
    parser.addOptions({
        {u"port"_s, u"TCP port on 127.0.0.1; 0, the default, takes a free one."_s, u"number"_s,
         u"0"_s},
        {u"port-file"_s, u"Writes the port to this file once it listens."_s, u"file"_s},
        {u"endpoint"_s, u"The only endpoint it knows. Default: %1."_s.arg(usual.endpoint), u"id"_s,
         usual.endpoint},
        {u"secret-key-file"_s, u"Reads the secret key from this file."_s, u"file"_s},
        {u"state"_s, u"Keeps what it holds in this file, through kills too."_s, u"file"_s},
        {u"code-lifetime"_s, u"How long an SMS code is good. Default: 300."_s, u"seconds"_s,
         u"300"_s},
        {u"capacity"_s,
         u"Bears so many operations a second: what comes faster waits, then is answered with "
         "HTTP 503 and Retry-After. Default: 0, bears everything."_s,
         u"number"_s, u"0"_s},
        {u"seed"_s, u"Makes the SMS codes the same in every run."_s, u"number"_s},
        {u"keep-alive"_s, u"How long an idle connection is kept. Default: 30."_s, u"seconds"_s,
         u"30"_s},
        {u"certificate"_s, u"Speaks TLS with this PEM certificate."_s, u"file"_s},
        {u"private-key"_s, u"PEM private key of the certificate."_s, u"file"_s},
        {u"verbose"_s, u"Prints every request with its answer, and the faults."_s},
    });
}

qint64 readNumber(const QCommandLineParser &parser, const QString &option, qint64 most)
{
    bool isNumber = false;
    const auto number = parser.value(option).toLongLong(&isNumber);
    if (!isNumber || number < 0 || number > most)
        refuse(u"--%1 must be a number from 0 to %2, not '%3'"_s.arg(option).arg(most).arg(
            parser.value(option)));
    return number;
}

/// From a file or the environment: on the command line every process could read it.
QString readSecretKey(const QString &file)
{
    if (file.isEmpty()) {
        const auto key = qEnvironmentVariable("SIMULATOR_SECRET_KEY");
        return key.isEmpty() ? Options().secretKey : key;
    }
    QFile source(file);
    if (!source.open(QIODevice::ReadOnly))
        refuse(u"secret key file %1: %2"_s.arg(file, source.errorString()));
    const auto key = QString::fromUtf8(source.readLine()).trimmed();
    if (key.isEmpty())
        refuse(u"secret key file %1: the first line must hold the key"_s.arg(file));
    return key;
}

Options readOptions(const QCommandLineParser &parser)
{
    constexpr qint64 day = 86'400;
    if (const auto extra = parser.positionalArguments(); !extra.isEmpty())
        refuse(u"unexpected argument '%1'"_s.arg(extra.constFirst()));
    Options options{
        .port = static_cast<int>(readNumber(parser, u"port"_s, 65'535)),
        .endpoint = parser.value(u"endpoint"_s),
        .secretKey = readSecretKey(parser.value(u"secret-key-file"_s)),
        .stateFile = parser.value(u"state"_s),
        .certificateFile = parser.value(u"certificate"_s),
        .privateKeyFile = parser.value(u"private-key"_s),
        .codeLifetime = std::chrono::seconds(readNumber(parser, u"code-lifetime"_s, day)),
        .keepAlive = std::chrono::seconds(readNumber(parser, u"keep-alive"_s, day)),
        .capacity = static_cast<int>(readNumber(parser, u"capacity"_s, 1'000'000)),
        .verbose = parser.isSet(u"verbose"_s),
    };
    if (parser.isSet(u"seed"_s))
        options.seed = readNumber(parser, u"seed"_s, std::numeric_limits<quint32>::max());
    if (options.certificateFile.isEmpty() != options.privateKeyFile.isEmpty())
        refuse(u"--certificate and --private-key go together"_s);
    return options;
}

void printLine(const QString &text)
{
    std::fputs((text + u'\n').toUtf8().constData(), stdout);
    std::fflush(stdout);
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
    QCoreApplication::setApplicationName(u"simulator"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(SIMULATOR_VERSION));
    QCommandLineParser parser;
    parser.setApplicationDescription(description());
    const auto help = parser.addHelpOption();
    const auto version = parser.addVersionOption();
    addOptions(parser);
    if (!parser.parse(QCoreApplication::arguments()))
        refuse(parser.errorText());
    if (parser.isSet(help))
        parser.showHelp();
    if (parser.isSet(version))
        parser.showVersion();
    auto options = readOptions(parser);
    std::mutex printing;
    options.print = [&printing](const QString &text) {
        const std::lock_guard lock(printing);
        printLine(text);
    };
    simulator::Simulator simulator(options);
    // The address comes first, though requests may come before it is printed.
    std::unique_lock addressFirst(printing);
    if (!simulator.start())
        return fail(simulator.errorString(), 1);
    printLine(u"listening on %1"_s.arg(simulator.url()));
    addressFirst.unlock();
    const auto portFile = parser.value(u"port-file"_s);
    if (!portFile.isEmpty() && !writePort(portFile, simulator.port()))
        return fail(u"port file %1 cannot be written"_s.arg(portFile), 1);

    int signal = 0;
    sigwait(&endSignals, &signal);
    return 0;
}
