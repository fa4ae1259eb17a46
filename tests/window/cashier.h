#pragma once

#include "till/window/mainwindow.h"

#include <QJsonObject>
#include <QLabel>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

#include <gtest/gtest.h>

/// The simulated service, as a process of its own.
class Service
{
public:
    Service();
    ~Service();
    Q_DISABLE_COPY_MOVE(Service)

    /// The one of the program: the plugin asks for its address once.
    static Service &instance();
    void start();
    void stop();
    int portNumber() const { return port; }
    QString url() const { return QStringLiteral("http://127.0.0.1:%1").arg(port); }
    /// The code of the last SMS.
    QString code() const;
    /// What it holds.
    QJsonObject dump() const { return send("GET", QStringLiteral("dump"), {}); }
    void order(const QJsonObject &fault) { send("POST", QStringLiteral("faults"), fault); }
    void reset();

private:
    QJsonObject send(const char *verb, const QString &path, const QJsonObject &body) const;

    QTemporaryDir directory;
    QProcess process;
    int port = 0;
};

/// A cashier with a window before them, and the service behind it.
class WindowTest : public testing::Test
{
protected:
    WindowTest();
    ~WindowTest() override;

    /// Opens the window anew, as after a start of the program.
    void openWindow(const QString &language = {});
    void closeWindow() { window.reset(); }

    /// The widget of that name; of several the last on the screen, that of the dialog on top.
    template<typename Widget = QWidget>
    Widget *find(const char *name) const
    {
        auto found = window->findChildren<Widget *>(QString::fromUtf8(name));
        while (found.size() > 1 && !found.constLast()->isVisible())
            found.removeLast();
        return found.value(found.size() - 1);
    }
    bool isShown(const char *name) const { return find(name) && find(name)->isVisible(); }
    /// Waits until a widget of that name is on the screen.
    template<typename Widget = QWidget>
    Widget *await(const char *name)
    {
        EXPECT_TRUE(QTest::qWaitFor([&] { return isShown(name); }, 10'000)) << name;
        return find<Widget>(name);
    }
    std::string text(const char *name) const;
    /// Waits until a label's text holds the words.
    void expectText(const char *name, const char *words);
    /// Types where the focus is; `shown` is what comes of it.
    void type(const char *keys, Qt::Key last = Qt::Key_unknown, const char *shown = nullptr);
    void press(Qt::Key key, const char *shown = nullptr);
    /// Types or scans a line, or presses a key, and waits until all that follows has happened.
    void enter(const char *line);
    void pressAndRest(Qt::Key key);
    void click(const char *name);
    /// Waits until no dialog is open and the till has nothing to do.
    void awaitRest();
    /// Keeps what is on the screen, when pictures are asked for.
    void picture(const char *name) const;
    /// Whether no text on the screen has such letters, a finger finds every button, and all that
    /// takes the focus has a name.
    void expectNoText(const QRegularExpression &letters) const;
    std::string cell(int row, int column) const;

    QString fileName(const char *name) const { return directory + u'/' + QLatin1String(name); }

    QTemporaryDir temporary;
    const QString directory = qEnvironmentVariable("TILL_DIRECTORY", temporary.path());
    Service &service = Service::instance();
    std::unique_ptr<till::MainWindow> window;
};
