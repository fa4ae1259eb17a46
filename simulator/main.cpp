#include "simulator/simulator.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QSaveFile>

#include <unistd.h>

#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

[[noreturn]] void fail(const QString &reason, int code)
{
    std::fputs(u"simulator: %1\n"_s.arg(reason).toUtf8().constData(), stderr);
    std::exit(code);
}

[[noreturn]] void refuse(const QString &reason)
{
    fail(reason + u"; --help says more"_s, 2);
}

void readArguments(QCommandLineParser &parser)
{
    QFile description(u":/simulator/help.txt"_s);
    if (description.open(QIODevice::ReadOnly))
        parser.setApplicationDescription(QString::fromUtf8(description.readAll()).trimmed());
    const auto help = parser.addHelpOption();
    const auto version = parser.addVersionOption();
    parser.addOptions({
        {u"port"_s, u"TCP port on 127.0.0.1; 0, the default, takes a free one."_s, u"number"_s,
         u"0"_s},
        {u"port-file"_s, u"Writes the port to this file when it listens."_s, u"file"_s},
        {u"endpoint"_s, u"The only endpoint it knows. Default: till-demo."_s, u"id"_s,
         u"till-demo"_s},
        {u"state"_s, u"Keeps its state in this file; survives kills."_s, u"file"_s},
        {u"capacity"_s,
         u"Serves at most this many operations a second; more wait, then get HTTP 503 and "
         "Retry-After. Default: 0, no limit."_s,
         u"number"_s, u"0"_s},
        {u"seed"_s, u"Makes the SMS codes the same in every run."_s, u"number"_s},
        {u"certificate"_s, u"Speaks TLS with this PEM certificate."_s, u"file"_s},
        {u"private-key"_s, u"PEM private key of the certificate."_s, u"file"_s},
    });
    if (!parser.parse(QCoreApplication::arguments()))
        refuse(parser.errorText());
    if (parser.isSet(help))
        parser.showHelp();
    if (parser.isSet(version))
        parser.showVersion();
    if (const auto extra = parser.positionalArguments(); !extra.isEmpty())
        refuse(u"unexpected argument '%1'"_s.arg(extra.constFirst()));
    if (parser.isSet(u"certificate"_s) != parser.isSet(u"private-key"_s))
        refuse(u"--certificate and --private-key go together"_s);
}

quint32 readNumber(const QCommandLineParser &parser, const QString &option, qint64 most)
{
    bool isNumber = false;
    const auto number = parser.value(option).toLongLong(&isNumber);
    if (!isNumber || number < 0 || number > most)
        refuse(u"--%1 must be a number from 0 to %2, not '%3'"_s.arg(option).arg(most).arg(
            parser.value(option)));
    return quint32(number);
}

simulator::Options readOptions(const QCommandLineParser &parser)
{
    simulator::Options options{
        .port = int(readNumber(parser, u"port"_s, 65'535)),
        .endpoint = parser.value(u"endpoint"_s),
        .stateFile = parser.value(u"state"_s),
        .certificateFile = parser.value(u"certificate"_s),
        .privateKeyFile = parser.value(u"private-key"_s),
        .capacity = int(readNumber(parser, u"capacity"_s, 1'000'000)),
        .print = [](const QString &text) { std::puts(text.toUtf8().constData()); },
    };
    if (parser.isSet(u"seed"_s))
        options.seed = readNumber(parser, u"seed"_s, 0xffff'ffff);
    // Any process can read a command line, but not an environment.
    if (const auto key = qEnvironmentVariable("SIMULATOR_SECRET_KEY"); !key.isEmpty())
        options.secretKey = key;
    return options;
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
    // Qt complains about a locale without UTF-8.
    qputenv("LC_ALL", "C.UTF-8");
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(u"simulator"_s);
    QCoreApplication::setApplicationVersion(u"" SIMULATOR_VERSION ""_s);
    QCommandLineParser parser;
    readArguments(parser);
    const auto options = readOptions(parser);
    simulator::Simulator simulator(options);
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    // Print the address first, although requests may come before.
    ::flockfile(stdout);
    if (const auto started = simulator.start(); !started)
        fail(started.error(), 1);
    options.print(u"listening on %1"_s.arg(simulator.url()));
    ::funlockfile(stdout);
    const auto portFile = parser.value(u"port-file"_s);
    if (!portFile.isEmpty() && !writePort(portFile, simulator.port()))
        fail(u"port file %1 cannot be written"_s.arg(portFile), 1);

    // A kill loses nothing, so there is no orderly end.
    for (;;)
        ::pause();
}
