#include "till/core/catalogue.h"
#include "till/core/settings.h"
#include "till/core/settingtable.h"
#include "till/core/utf8locale.h"
#include "till/window/mainwindow.h"
#include "till/window/style.h"

#include <host/config.h>
#include <host/logging.h>
#include <host/privatefile.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QScreen>
#include <QTimer>

#include <csignal>
#include <iostream>
#include <sys/stat.h>
#include <tuple>

using namespace Qt::StringLiterals;

namespace {

constexpr int badSetup = 2;

int refuseToStart(const QString &reason)
{
    std::cerr << "till-window: " << reason.toStdString() << std::endl;
    return badSetup;
}

/// Handles Qt's messages until there is a screen: without a screen Qt would abort the program.
void noteScreen(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (type == QtFatalMsg)
        std::_Exit(refuseToStart(u"no screen to open the window on; set DISPLAY or "
                                 "WAYLAND_DISPLAY, or sell at a terminal with \"till\""_s));
    if (QLatin1StringView(context.category).startsWith("qt.qpa"_L1))
        std::cerr << "till-window: " << text.toStdString() << std::endl;
}

/// Why the till cannot sell.
struct Refusal
{
    QString details = {}; ///< For support; empty when the till can sell.
    /// For the cashier.
    QString reason =
        till::MainWindow::tr("Something is wrong with the till's settings or its disk. "
                             "Call support: \"till check\" says what to mend.");
};

/// Loads the settings and starts the log.
Refusal prepare(const till::SettingsOverrides &options, till::Settings &settings)
{
    const auto loaded = till::loadSettings(options);
    if (loaded)
        settings = *loaded;
    if (const auto language = till::installLanguage(settings.language); !language) {
        std::ignore = till::installLanguage({}); // the environment's, to report the problem in
        return {language.error()};
    }
    if (!loaded)
        return {loaded.error().text()};
    for (const auto &problem : till::findProblems()) {
        if (problem.isFatal)
            return {u"%1 cannot be used"_s.arg(problem.setting->key),
                    till::MainWindow::tr("The setting %1 is missing or cannot be used. Call "
                                         "support: \"till check\" says what to mend.")
                        .arg(problem.setting->key)};
    }
    if (const auto made = privatefile::createDirectory(settings.dataDirectory); !made)
        return {made.error()};
    // A full disk or a read-only directory must not keep the till from selling.
    const auto &file = settings.logFile;
    if (const auto log = logging::start(file, file.isEmpty()); !log)
        std::cerr << "till-window: " << log.error().toStdString() << std::endl;
    return {};
}

/// Reads the options; shows help and version without a screen.
bool readOptions(int argc, char *argv[], till::SettingsOverrides &options, bool &delivers)
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"The till with the loyalty plugin, as a window. Exit code: 0; 2 for bad options or "
        "settings, without a screen, and when the till is open elsewhere."_s);
    parser.addHelpOption();
    parser.addVersionOption();
    const auto setting = u"Instead of the setting Till:%1."_s;
    parser.addOptions({{u"config"_s, u"Settings file, as of \"till\"."_s, u"file"_s},
                       {u"plugin"_s, setting.arg("plugin"_L1), u"file"_s},
                       {u"data"_s, setting.arg("dataDir"_L1), u"directory"_s},
                       {u"language"_s, setting.arg("language"_L1), u"code"_s},
                       {u"log"_s, setting.arg("log"_L1), u"file"_s},
                       {u"no-delivery"_s, u"Do not deliver the queue while selling."_s}});
    if (!parser.parse(QCoreApplication::arguments())) {
        refuseToStart(parser.errorText());
        return false;
    }
    parser.process(application);
    options = {parser.value(u"config"_s), parser.value(u"plugin"_s), parser.value(u"data"_s),
               parser.value(u"language"_s), parser.value(u"log"_s)};
    delivers = !parser.isSet(u"no-delivery"_s);
    return true;
}

/// Shows the window, which sells or tells why it cannot. \return The program's exit code.
int show(const till::Settings &settings, bool delivers, const Refusal &refusal,
         const QString &settingsFile)
{
    till::installPalette();
    till::MainWindow window(settings, delivers);
    QObject::connect(&window, &till::MainWindow::ended, qApp,
                     [](int code) { QApplication::exit(code); });
    // There may be no window manager to maximise the window or to give it the keyboard.
    window.setGeometry(window.screen()->availableGeometry());
    window.showMaximized();
    window.activateWindow();
    // Shows the window before the till is opened.
    if (refusal.details.isEmpty()) {
        QTimer::singleShot(0, &window, &till::MainWindow::start);
    } else {
        refuseToStart(refusal.details);
        window.refuse(refusal.reason, refusal.details + u'\n' + settingsFile);
    }
    return QApplication::exec();
}

} // namespace

int main(int argc, char *argv[])
{
    // A closed connection must be an error at its use, not the end of the program.
    std::signal(SIGPIPE, SIG_IGN);
    ::umask(077);
    till::chooseUtf8();
    QCoreApplication::setApplicationName(u"till-window"_s);
    QCoreApplication::setApplicationVersion(u"" TILL_VERSION ""_s);
    till::SettingsOverrides options;
    till::Settings settings;
    bool delivers = true;
    if (!readOptions(argc, argv, options, delivers))
        return badSetup;
    auto *const usualMessages = qInstallMessageHandler(noteScreen);
    int forQt = 1; // Qt must not see our options: it has a "--plugin", too
    const QApplication application(forQt, argv);
    qInstallMessageHandler(usualMessages);
    const auto refusal = prepare(options, settings);
    const auto exitCode = show(settings, delivers, refusal, Config::filePath(options.config));
    logging::stop();
    return exitCode;
}
