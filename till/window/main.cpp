#include "till/core/catalogue.h"
#include "till/core/legacydata.h"
#include "till/core/logrotation.h"
#include "till/core/settings.h"
#include "till/core/settingscheck.h"
#include "till/window/mainwindow.h"

#include <host/config.h>
#include <host/logging.h>
#include <host/privatefile.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QTimer>

#include <algorithm>
#include <csignal>
#include <iostream>

namespace {

constexpr int badSetup = 2;

int refuseToStart(const QString &reason)
{
    std::cerr << "till-window: " << reason.toStdString() << std::endl;
    return badSetup;
}

till::WindowSetup readSetup(const QCommandLineParser &parser, QString &error)
{
    const auto value = [&parser](const char *name) { return parser.value(QLatin1String(name)); };
    const auto &config = *Singleton<Config>::instance();
    till::WindowSetup setup;
    setup.till = till::loadSettings(
        {value("config"), value("plugin"), value("data"), value("language"), value("log")}, error);
    setup.delivers = !parser.isSet(QStringLiteral("no-delivery"));
    setup.service = QUrl(config.getText(QStringLiteral("LmMindbox:url")));
    setup.goodsFile = config.getText(QStringLiteral("Till:goodsFile"));
    setup.phoneMask =
        config.getText(QStringLiteral("Till:phoneMask"), QStringLiteral("+7(999)-999-99-99;_"));
    return setup;
}

/// What keeps the window from opening; empty for nothing.
QString prepare(const till::Settings &settings)
{
    for (const auto &complaint : till::checkSettings(*Singleton<Config>::instance())) {
        if (complaint.weight == till::SettingComplaint::Weight::Fatal)
            return QStringLiteral("%1 cannot be used; \"till check\" says why").arg(complaint.key);
    }
    if (const auto problem = till::installLanguage(settings.language))
        return *problem;
    if (const auto problem = privatefile::createDirectory(settings.dataDirectory))
        return *problem;
    // A full disk or a read-only directory must not keep the till from selling.
    if (const auto problem = logging::start(settings.logFile, settings.logFile.isEmpty()))
        std::cerr << "till-window: " << problem->toStdString() << std::endl;
    return till::legacydata::adoptQueue(settings.dataDirectory).value_or(QString());
}

void addOptions(QCommandLineParser &parser)
{
    const auto text = [](const char *words) { return QString::fromLatin1(words); };
    parser.setApplicationDescription(text("The till with the loyalty plugin, as a window."));
    parser.addHelpOption();
    parser.addVersionOption();
    const auto add = [&](const char *name, const char *meaning, const char *value) {
        parser.addOption({text(name), text(meaning), text(value)});
    };
    add("config", "Settings file, as of \"till\".", "file");
    add("plugin", "Plugin module. Default: the setting Till:plugin.", "file");
    add("data", "Data directory. Default: the setting Till:dataDir.", "directory");
    add("language", "Language of the texts: ru or en. Default: the setting Till:language.", "code");
    add("log", "Log file, \"-\" for standard error. Default: the setting Till:log.", "file");
    parser.addOption({text("no-delivery"), text("Do not deliver the queue while selling.")});
}

/// Whether the program is only to say something of itself, which takes no screen.
bool isAskedOnly(int argc, char *argv[])
{
    return std::any_of(argv + 1, argv + argc, [](const char *argument) {
        return QLatin1String(argument) == QLatin1String("--help") ||
               QLatin1String(argument) == QLatin1String("--version");
    });
}

} // namespace

int main(int argc, char *argv[])
{
    // A connection that has gone is an error where it is used, not the till's end.
    std::signal(SIGPIPE, SIG_IGN);
    const till::LogRotation rotation;
    if (isAskedOnly(argc, argv))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("till-window"));
    QApplication::setApplicationVersion(QStringLiteral(TILL_VERSION));
    QCommandLineParser parser;
    addOptions(parser);
    parser.process(application);

    QString error;
    const auto setup = readSetup(parser, error);
    if (error.isEmpty())
        error = prepare(setup.till);
    if (!error.isEmpty())
        return refuseToStart(error);

    int exitCode = 0;
    {
        till::MainWindow window(setup);
        QObject::connect(&window, &till::MainWindow::ended, &application,
                         [](int code) { QApplication::exit(code); });
        window.showMaximized();
        // The window is on the screen before the till is looked after.
        QTimer::singleShot(0, &window, &till::MainWindow::start);
        exitCode = QApplication::exec();
    }
    logging::stop();
    return exitCode;
}
