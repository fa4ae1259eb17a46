#include "simulator/programoptions.h"

#include "simulator/presets.h"

#include <QCommandLineParser>
#include <QFile>

#include <limits>

namespace simulator {

namespace {

QString description()
{
    auto text = QStringLiteral(
        "The loyalty service on loopback. Prints its address, then every SMS and letter it sends.\n"
        "\n"
        "The secret key is the first line of --secret-key-file, else the environment variable\n"
        "SIMULATOR_SECRET_KEY, else \"demo-secret\".\n"
        "\n"
        "Beside the operations it serves:\n"
        "  GET /simulator/dump       everything it holds, as JSON\n"
        "  POST /simulator/faults    orders a fault, such as\n"
        "                            {\"kind\": \"drop\", \"operation\": \"Offline.GetCustomer\",\n"
        "                             \"count\": 1, \"executed\": true}\n"
        "                            kinds: delay, slowDrip (\"milliseconds\"), drop, cut,\n"
        "                            emptyBody (\"httpCode\"), http500, html,\n"
        "                            wrongCodeAsValidationError; or by lot:\n"
        "                            {\"random\": {\"seed\": 1, \"probability\": 0.2,\n"
        "                             \"kinds\": [\"drop\", \"cut\"], \"milliseconds\": 100}}\n"
        "  DELETE /simulator/faults  drops the faults not played yet\n"
        "  POST /simulator/reset     back to the preset customers\n"
        "\n"
        "Preset customers; every other phone is unknown until it is registered:\n");
    for (const auto &preset : presets())
        text += QStringLiteral("  %1  %2\n").arg(preset.mobilePhone, preset.description);
    return text.trimmed();
}

/// Reads whole numbers of a range and keeps the first complaint.
class Numbers
{
public:
    explicit Numbers(const QCommandLineParser &parser)
        : parser(parser)
    {}

    qint64 read(const QString &option, qint64 least, qint64 most)
    {
        bool isNumber = false;
        const auto number = parser.value(option).toLongLong(&isNumber);
        if (isNumber && number >= least && number <= most)
            return number;
        if (error.isEmpty())
            error = QStringLiteral("--%1 must be a number from %2 to %3, not '%4'")
                        .arg(option)
                        .arg(least)
                        .arg(most)
                        .arg(parser.value(option));
        return least;
    }

    QString error;

private:
    const QCommandLineParser &parser;
};

/// Returns what is wrong with the first number that is none, empty when all are right.
QString readNumbers(const QCommandLineParser &parser, Options &options)
{
    Numbers numbers(parser);
    options.port = static_cast<int>(numbers.read(QStringLiteral("port"), 0, 65535));
    options.codeLifetime =
        std::chrono::seconds(numbers.read(QStringLiteral("code-lifetime"), 0, 86400));
    options.keepAlive = std::chrono::seconds(numbers.read(QStringLiteral("keep-alive"), 0, 86400));
    if (parser.isSet(QStringLiteral("seed")))
        options.seed = static_cast<quint32>(
            numbers.read(QStringLiteral("seed"), 0, std::numeric_limits<quint32>::max()));
    return numbers.error;
}

QString readSecretKey(const QString &file, Options &options)
{
    if (file.isEmpty()) {
        if (const auto key = qEnvironmentVariable("SIMULATOR_SECRET_KEY"); !key.isEmpty())
            options.secretKey = key;
        return {};
    }
    QFile source(file);
    if (!source.open(QIODevice::ReadOnly))
        return QStringLiteral("secret key file %1: %2").arg(file, source.errorString());
    options.secretKey = QString::fromUtf8(source.readLine()).trimmed();
    if (options.secretKey.isEmpty())
        return QStringLiteral("secret key file %1: the first line must hold the key").arg(file);
    return {};
}

void addOptions(QCommandLineParser &parser)
{
    const Options usual;
    const auto text = [](const char *words) { return QString::fromLatin1(words); };
    parser.addOptions({
        {text("port"), text("TCP port on 127.0.0.1; 0, the default, takes a free one."),
         text("number"), text("0")},
        {text("port-file"), text("Writes the port to this file once it listens."), text("file")},
        {text("endpoint"), text("The only endpoint it knows. Default: till-demo."), text("id"),
         usual.endpoint},
        {text("secret-key-file"), text("Reads the secret key from this file."), text("file")},
        {text("journal"), text("Keeps its state in this file, through kills too."), text("file")},
        {text("code-lifetime"), text("How long an SMS code is good. Default: 300."),
         text("seconds"), text("300")},
        {text("seed"), text("Makes the SMS codes the same in every run."), text("number")},
        {text("keep-alive"), text("How long an idle connection is kept. Default: 30."),
         text("seconds"), text("30")},
        {text("certificate"), text("Speaks TLS with this PEM certificate."), text("file")},
        {text("private-key"), text("PEM private key of the certificate."), text("file")},
        {text("verbose"), text("Prints every request with its answer, and the faults.")},
    });
}

} // namespace

ProgramOptions readProgramOptions(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(description());
    const auto help = parser.addHelpOption();
    addOptions(parser);

    ProgramOptions result;
    if (!parser.parse(arguments))
        result.error = parser.errorText();
    else if (!parser.positionalArguments().isEmpty())
        result.error = QStringLiteral("unexpected argument '%1'")
                           .arg(parser.positionalArguments().constFirst());
    if (!result.error.isEmpty())
        return result;
    if (parser.isSet(help)) {
        result.help = parser.helpText();
        return result;
    }
    auto &options = result.simulator;
    result.error = readNumbers(parser, options);
    options.endpoint = parser.value(QStringLiteral("endpoint"));
    options.journalFile = parser.value(QStringLiteral("journal"));
    options.certificateFile = parser.value(QStringLiteral("certificate"));
    options.privateKeyFile = parser.value(QStringLiteral("private-key"));
    options.verbose = parser.isSet(QStringLiteral("verbose"));
    result.portFile = parser.value(QStringLiteral("port-file"));
    if (result.error.isEmpty())
        result.error = readSecretKey(parser.value(QStringLiteral("secret-key-file")), options);
    if (options.certificateFile.isEmpty() != options.privateKeyFile.isEmpty())
        result.error = QStringLiteral("--certificate and --private-key go together");
    return result;
}

} // namespace simulator
