#include "simulator/presets.h"
#include "simulator/simulator.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QSaveFile>

#include <csignal>
#include <cstdio>
#include <limits>
#include <mutex>

using namespace Qt::StringLiterals;
using simulator::Options;

namespace {

const auto sayMore = u"; --help says more"_s;

QString description()
{
    auto text = QStringLiteral(
        "The loyalty service on loopback. Prints its address, then every SMS and letter it sends.\n"
        "\n"
        "The secret key is the first line of --secret-key-file, else the environment variable\n"
        "SIMULATOR_SECRET_KEY, else \"demo-secret\".\n"
        "\n"
        "Beside the operations it serves:\n"
        "  GET /                     a page that shows it all in a browser, as it happens\n"
        "  GET /simulator/dump       everything it holds, as JSON\n"
        "  POST /simulator/faults    orders a fault, such as\n"
        "                            {\"kind\": \"drop\", \"operation\": \"Offline.GetCustomer\",\n"
        "                             \"count\": 1, \"executed\": true}\n"
        "                            kinds: delay, slowDrip (\"milliseconds\"), drop, cut,\n"
        "                            emptyBody (\"httpCode\"), http500, html,\n"
        "                            busy (\"httpCode\", \"retryAfter\" in seconds),\n"
        "                            wrongCodeAsValidationError; \"count\" 0 stands for all\n"
        "                            requests, \"probability\" 0.2 for every fifth by lot; or\n"
        "                            any of some kinds by lot:\n"
        "                            {\"random\": {\"seed\": 1, \"probability\": 0.2,\n"
        "                             \"kinds\": [\"drop\", \"cut\"], \"milliseconds\": 100}}\n"
        "  DELETE /simulator/faults  drops the faults not played yet; with ?kind=drop those\n"
        "  POST /simulator/reset     back to the preset customers\n"
        "\n"
        "Preset customers; every other phone is unknown until it is registered:\n");
    for (const auto &preset : simulator::presets())
        text += u"  %1  %2\n"_s.arg(preset.mobilePhone, preset.description);
    return text.trimmed();
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

/// Reads the numbers. Returns what is wrong with the first that is none, empty when all are right.
QString readNumbers(const QCommandLineParser &parser, Options &options)
{
    QString error;
    const auto read = [&](const QString &option, qint64 most) {
        bool isNumber = false;
        const auto number = parser.value(option).toLongLong(&isNumber);
        if (isNumber && number >= 0 && number <= most)
            return number;
        if (error.isEmpty())
            error = u"--%1 must be a number from 0 to %2, not '%3'"_s.arg(option).arg(most).arg(
                parser.value(option));
        return qint64(0);
    };
    constexpr qint64 day = 86'400;
    options.port = static_cast<int>(read(u"port"_s, 65'535));
    options.codeLifetime = std::chrono::seconds(read(u"code-lifetime"_s, day));
    options.keepAlive = std::chrono::seconds(read(u"keep-alive"_s, day));
    options.capacity = static_cast<int>(read(u"capacity"_s, 1'000'000));
    if (parser.isSet(u"seed"_s))
        options.seed = static_cast<quint32>(read(u"seed"_s, std::numeric_limits<quint32>::max()));
    return error;
}

/// From a file or the environment: on the command line every process could read it.
QString readSecretKey(const QString &file, Options &options)
{
    if (file.isEmpty()) {
        if (const auto key = qEnvironmentVariable("SIMULATOR_SECRET_KEY"); !key.isEmpty())
            options.secretKey = key;
        return {};
    }
    QFile source(file);
    if (!source.open(QIODevice::ReadOnly))
        return u"secret key file %1: %2"_s.arg(file, source.errorString());
    options.secretKey = QString::fromUtf8(source.readLine()).trimmed();
    if (options.secretKey.isEmpty())
        return u"secret key file %1: the first line must hold the key"_s.arg(file);
    return {};
}

/// Returns what is wrong, empty when nothing is.
QString readOptions(const QCommandLineParser &parser, Options &options)
{
    if (const auto extra = parser.positionalArguments(); !extra.isEmpty())
        return u"unexpected argument '%1'"_s.arg(extra.constFirst());
    options.endpoint = parser.value(u"endpoint"_s);
    options.stateFile = parser.value(u"state"_s);
    options.certificateFile = parser.value(u"certificate"_s);
    options.privateKeyFile = parser.value(u"private-key"_s);
    options.verbose = parser.isSet(u"verbose"_s);
    if (options.certificateFile.isEmpty() != options.privateKeyFile.isEmpty())
        return u"--certificate and --private-key go together"_s;
    if (auto wrong = readNumbers(parser, options); !wrong.isEmpty())
        return wrong;
    return readSecretKey(parser.value(u"secret-key-file"_s), options);
}

void printLine(const QString &text)
{
    std::fputs((text + u'\n').toUtf8().constData(), stdout);
    std::fflush(stdout);
}

int fail(const QString &reason, int code)
{
    std::fputs(u"simulator: %1\n"_s.arg(reason).toUtf8().constData(), stderr);
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
    QCoreApplication::setApplicationName(u"simulator"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(SIMULATOR_VERSION));
    QCommandLineParser parser;
    parser.setApplicationDescription(description());
    const auto help = parser.addHelpOption();
    const auto version = parser.addVersionOption();
    addOptions(parser);
    if (!parser.parse(QCoreApplication::arguments()))
        return fail(parser.errorText() + sayMore, 2);
    if (parser.isSet(help))
        parser.showHelp();
    if (parser.isSet(version))
        parser.showVersion();
    Options options;
    if (const auto wrong = readOptions(parser, options); !wrong.isEmpty())
        return fail(wrong + sayMore, 2);
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
