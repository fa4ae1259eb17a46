#include "benchmarks/measure.h"
#include "benchmarks/rows.h"

#include "till/core/catalogue.h"
#include "till/core/settings.h"
#include "till/window/mainwindow.h"

#include <host/privatefile.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QTableView>

#include <memory>

using namespace Qt::StringLiterals;

namespace bench {

namespace {

std::unique_ptr<till::MainWindow> makeWindow(const QString &settingsFile, const QString &directory,
                                             const QString &goodsFile)
{
    const auto settings = till::loadSettings({settingsFile, {}, directory, u"ru"_s, {}});
    if (!settings || !till::installLanguage(settings->language) ||
        !privatefile::createDirectory(settings->dataDirectory))
        return nullptr;
    Singleton<Config>::instance()->set(u"Till:goodsFile"_s, goodsFile);
    return std::make_unique<till::MainWindow>(*settings, false);
}

/// The till's window with a receipt that grows.
class GrowingReceipt
{
public:
    explicit GrowingReceipt(const Service &service)
    {
        QFile goods(service.newFile());
        if (goods.open(QIODevice::WriteOnly))
            goods.write("code;name;price\n4600;Milk;89.90\n");
        goods.close();
        window = makeWindow(service.newSettingsFile(), service.newFile(), goods.fileName());
        window->resize(1'024, 768);
        window->show();
        window->start();
        line = window->findChild<QLineEdit *>(u"goods"_s);
        table = window->findChild<QTableView *>(u"positions"_s);
        waitUntil([this] { return !window->isBusy(); });
    }

    /// Adds a position as a scanner does. \return Whether it was painted.
    bool add()
    {
        const auto before = table->model()->rowCount();
        line->setText(u"4600"_s);
        QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
        QCoreApplication::sendEvent(line, &enter);
        const auto isAdded = waitUntil(
            [&] { return table->model()->rowCount() == before + 1 && !window->isBusy(); });
        table->viewport()->repaint();
        return isAdded;
    }

private:
    static bool waitUntil(const Call &isReached)
    {
        QElapsedTimer timer;
        timer.start();
        while (!isReached() && !timer.hasExpired(10'000))
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return isReached();
    }

    std::unique_ptr<till::MainWindow> window;
    QLineEdit *line = nullptr;
    QTableView *table = nullptr;
};

} // namespace

void measureWindow(const Service &service, bool isQuick)
{
    const auto paint = [](const QStringList &arguments) {
        QProcess process;
        process.start(QCoreApplication::applicationFilePath(),
                      QStringList{u"--paint"_s} + arguments);
        return process.waitForFinished() && process.exitCode() == 0;
    };
    const QStringList till{service.newSettingsFile(), service.newFile()};
    compare(
        {u"first paint of the window"_s, u"a window with one word"_s, 50},
        [&] { return paint(till); }, [&] { return paint({u"Касса"_s}); });

    GrowingReceipt receipt(service);
    const Row row{u"position added to 1,000, key to paint"_s, u"to 10"_s};
    std::vector<double> ours;
    std::vector<double> baseline;
    for (int position = 1; position <= (isQuick ? 100 : 1'050); ++position) {
        const auto time = timeOf(row, [&receipt] { return receipt.add(); });
        if (position > 10 && position <= 60)
            baseline.push_back(time);
        else if (position > (isQuick ? 60 : 1'000))
            ours.push_back(time);
    }
    print(row, std::move(ours), std::move(baseline));
}

int paintOnce(const QStringList &arguments)
{
    std::unique_ptr<QWidget> window;
    if (arguments.size() == 1)
        window = std::make_unique<QLabel>(arguments.first());
    else
        window = makeWindow(arguments.at(0), arguments.at(1), {});
    if (!window)
        return 1;
    window->showMaximized();
    return window->grab().isNull() ? 1 : 0;
}

} // namespace bench
