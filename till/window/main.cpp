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
#include <tuple>

namespace {

constexpr int badSetup = 2;

int refuseToStart(const QString &reason)
{
    std::cerr << "till-window: " << reason.toStdString() << std::endl;
    return badSetup;
}

/// Qt's messages until there is a screen. Without one Qt would abort the program.
void noteScreen(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (type == QtFatalMsg)
        std::_Exit(refuseToStart(
            QStringLiteral("no screen to open the window on; set DISPLAY or WAYLAND_DISPLAY, or "
                           "sell at a terminal with \"till\"")));
    if (QLatin1String(context.category).startsWith(QLatin1String("qt.qpa")))
        std::cerr << "till-window: " << text.toStdString() << std::endl;
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
QString prepare(till::WindowSetup &setup)
{
    using Weight = till::SettingComplaint::Weight;
    const auto &settings = setup.till;
    for (const auto &complaint : till::checkSettings(*Singleton<Config>::instance())) {
        const auto text =
            QStringLiteral("%1 cannot be used; \"till check\" says why").arg(complaint.key);
        if (complaint.weight == Weight::Fatal)
            return text;
        if (complaint.weight == Weight::Wrong)
            setup.complaints.append(text);
    }
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
    parser.setApplicationDescription(
        text("The till with the loyalty plugin, as a window. Exit code: 0; 2 for bad options or "
             "settings, without a screen, and when the till is open elsewhere."));
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

/// Opens the window, to sell in or to say why it cannot be. \return The program's exit code.
int show(const till::WindowSetup &setup, const QString &error, const QString &settingsFile)
{
    till::MainWindow window(setup);
    QObject::connect(&window, &till::MainWindow::ended, qApp,
                     [](int code) { QApplication::exit(code); });
    window.showMaximized();
    // The window is on the screen before the till is looked after.
    if (error.isEmpty()) {
        QTimer::singleShot(0, &window, &till::MainWindow::start);
    } else {
        refuseToStart(error);
        window.refuse(till::MainWindow::tr("The till cannot open: something is wrong with its "
                                           "settings or its disk. Call the one who looks after "
                                           "it; \"till check\" says what to mend.\n%1")
                          .arg(settingsFile));
    }
    return QApplication::exec();
}

} // namespace

int main(int argc, char *argv[])
{
    // A connection that has gone is an error where it is used, not the till's end.
    std::signal(SIGPIPE, SIG_IGN);
    const till::LogRotation rotation;
    if (isAskedOnly(argc, argv))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    auto *const usualMessages = qInstallMessageHandler(noteScreen);
    QApplication application(argc, argv);
    qInstallMessageHandler(usualMessages);
    QApplication::setApplicationName(QStringLiteral("till-window"));
    QApplication::setApplicationVersion(QStringLiteral(TILL_VERSION));
    QCommandLineParser parser;
    addOptions(parser);
    if (!parser.parse(QApplication::arguments()))
        return refuseToStart(parser.errorText());
    parser.process(application);

    QString error;
    auto setup = readSetup(parser, error);
    if (const auto problem = till::installLanguage(setup.till.language)) {
        std::ignore = till::installLanguage({}); // the usual one, to say so in
        error = *problem;
    }
    if (error.isEmpty())
        error = prepare(setup);
    const auto exitCode =
        show(setup, error, Config::filePath(parser.value(QStringLiteral("config"))));
    logging::stop();
    return exitCode;
}
