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

using namespace Qt::StringLiterals;

/// The simulated service in its own process.
class Service
{
public:
    Service();
    ~Service();
    Q_DISABLE_COPY_MOVE(Service)

    /// The program's only one, because the plugin reads its address once.
    static Service &instance();
    void start();
    void stop();
    QString url() const { return u"http://127.0.0.1:%1"_s.arg(port); }
    /// The code of the last SMS.
    QString code() const;
    /// The service's state.
    QJsonObject dump() const { return send("GET", u"dump"_s, {}); }
    void order(const QJsonObject &fault) { send("POST", u"faults"_s, fault); }
    void reset();

private:
    QJsonObject send(const char *verb, const QString &path, const QJsonObject &body) const;

    QTemporaryDir directory;
    QProcess process;
    int port = 0;
};

/// A cashier at a window, with the service behind it.
class WindowTest : public testing::Test
{
protected:
    WindowTest();
    ~WindowTest() override;

    /// Opens a new window, as the program's start does.
    void openWindow(const QString &language = {});
    void closeWindow() { window.reset(); }

    /// The widget with that name; among several the last visible one, in the topmost dialog.
    template<typename Widget = QWidget>
    Widget *find(const char *name) const
    {
        auto found = window->findChildren<Widget *>(QString::fromUtf8(name));
        while (found.size() > 1 && !found.constLast()->isVisible())
            found.removeLast();
        return found.value(found.size() - 1);
    }
    bool isShown(const char *name) const { return find(name) && find(name)->isVisible(); }
    /// Waits until a widget with that name is visible.
    template<typename Widget = QWidget>
    Widget *await(const char *name)
    {
        EXPECT_TRUE(QTest::qWaitFor([&] { return isShown(name); }, 10'000)) << name;
        return find<Widget>(name);
    }
    /// The text of a label, or of all items of a list.
    std::string text(const char *name) const;
    /// Waits until a label's text holds the words.
    void expectText(const char *name, const char *words);
    /// Types at the focus; `shown` is the text that results.
    void type(const char *keys, Qt::Key last = Qt::Key_unknown, const char *shown = nullptr);
    void press(Qt::Key key, const char *shown = nullptr);
    /// Types like a scanner: to the window, each character after `gap` milliseconds, then `end`.
    void scan(const char *code, Qt::Key end = Qt::Key_Return, int gap = -1);
    /// Presses a key, whatever has the focus.
    void strike(Qt::Key key, const QString &text = {});
    /// Waits until a dialog takes Enter.
    static void read() { QTest::qWait(550); }
    /// Types a line or presses a key, and waits until the till has reacted.
    void enter(const char *line);
    void pressAndRest(Qt::Key key);
    void click(const char *name);
    /// Waits until no dialog is open and the till has nothing to do.
    void awaitRest();
    /// Whether no visible text has such letters, every button is large enough for a finger, and
    /// every widget that takes the focus has a name.
    void expectNoText(const QRegularExpression &letters) const;
    std::string cell(int row, int column) const;

    QString fileName(const char *name) const { return directory.filePath(QLatin1String(name)); }

    QTemporaryDir directory;
    Service &service = Service::instance();
    std::unique_ptr<till::MainWindow> window;
};
