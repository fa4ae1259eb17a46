#include "benchmarks/comparison.h"
#include "benchmarks/setup.h"

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

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <memory>
#include <vector>

namespace bench {

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto code = "4600";
constexpr int size = 768;

double secondsSince(Clock::time_point begin)
{
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

/// Calls back whenever a widget has been asked to paint itself.
class PaintWatch : public QObject
{
public:
    PaintWatch(QWidget &widget, std::function<void()> painted)
        : painted(std::move(painted))
    {
        widget.installEventFilter(this);
    }
    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            painted();
        return false;
    }

private:
    std::function<void()> painted;
};

std::unique_ptr<till::MainWindow> makeWindow(const QString &settingsFile, const QString &directory,
                                             const QString &goodsFile)
{
    QString error;
    till::WindowSetup setup;
    setup.till = till::loadSettings({settingsFile, {}, directory, QStringLiteral("ru"), {}}, error);
    if (!error.isEmpty() || till::installLanguage(setup.till.language) ||
        privatefile::createDirectory(setup.till.dataDirectory))
        return nullptr;
    setup.delivers = false;
    setup.goodsFile = goodsFile;
    setup.phoneMask = QStringLiteral("+7(999)-999-99-99;_");
    return std::make_unique<till::MainWindow>(setup);
}

/// Seconds that a process of its own needs to its first paint; negative when it fails.
double paintInNewProcess(const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationFilePath(),
                  QStringList{QStringLiteral("--paint")} + arguments);
    if (!process.waitForFinished() || process.exitCode() != 0)
        return -1;
    return process.readAllStandardOutput().trimmed().toDouble();
}

/// The till's window against another one.
void firstPaint(benchmark::State &state, Setup &setup, const QStringList &other)
{
    std::vector<double> ours;
    std::vector<double> floor;
    const QStringList till{setup.newSettingsFile(), setup.newFile()};
    for ([[maybe_unused]] auto iteration : state) {
        ours.push_back(paintInNewProcess(till));
        floor.push_back(paintInNewProcess(other));
        if (ours.back() < 0 || floor.back() < 0) {
            fail(state, "a window was not painted");
            return;
        }
        state.SetIterationTime(ours.back());
    }
    setCounters(state, "ours", std::move(ours));
    setCounters(state, "floor", std::move(floor));
}

/// The till's window with a receipt that grows.
class GrowingReceipt
{
public:
    explicit GrowingReceipt(Setup &setup)
    {
        QFile goods(setup.newFile());
        if (goods.open(QIODevice::WriteOnly))
            goods.write("code;name;price\n4600;Milk;89.90\n");
        goods.close();
        window = makeWindow(setup.newSettingsFile(), setup.newFile(), goods.fileName());
        window->resize(size * 4 / 3, size);
        window->show();
        window->start();
        line = window->findChild<QLineEdit *>(QStringLiteral("goods"));
        table = window->findChild<QTableView *>(QStringLiteral("positions"));
        watch = std::make_unique<PaintWatch>(*table->viewport(), [this] { isPainted = true; });
        waitUntil([this] { return !window->isBusy(); });
    }

    int count() const { return table->model()->rowCount(); }
    /// Adds a position the way a scanner does. \return Whether it came to be seen.
    bool add()
    {
        const auto before = count();
        line->setText(QLatin1String(code));
        QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
        QCoreApplication::sendEvent(line, &enter);
        const auto isAdded = waitUntil([&] { return count() == before + 1 && !window->isBusy(); });
        isPainted = false;
        // The row is marked and scrolled to: all of that comes with the next paint.
        table->viewport()->update();
        return isAdded && waitUntil([this] { return isPainted; });
    }

private:
    static bool waitUntil(const std::function<bool()> &isReached)
    {
        constexpr int longest = 10'000;
        QElapsedTimer timer;
        timer.start();
        while (!isReached() && timer.elapsed() < longest)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return isReached();
    }

    std::unique_ptr<till::MainWindow> window;
    QLineEdit *line = nullptr;
    QTableView *table = nullptr;
    std::unique_ptr<PaintWatch> watch;
    bool isPainted = false;
};

/// Positions added to a long receipt, in turn with some added to a short one: a round has both. The
/// processor time is that of the window's thread, without the till's.
void addPosition(benchmark::State &state, Setup &setup)
{
    constexpr int samples = 20; // of each round and length
    constexpr int few = 10;
    const auto many = setup.isQuick() ? 100 : 1'000;
    Samples ours;
    Samples floor;
    for ([[maybe_unused]] auto iteration : state) {
        GrowingReceipt receipt(setup);
        const auto add = [&receipt] { return receipt.add(); };
        auto isAdded = true;
        const auto grow = [&](int length) {
            while (receipt.count() < length && isAdded)
                isAdded = add();
        };
        const auto measure = [&](Samples &into) {
            for (int i = 0; i < samples && isAdded; ++i)
                isAdded = into.add(1, add);
        };
        grow(few);
        measure(floor);
        grow(many);
        measure(ours);
        if (!isAdded) {
            fail(state, "a position was not added");
            return;
        }
        state.SetIterationTime(ours.wall.back());
    }
    setCounters(state, std::move(ours), std::move(floor));
}

std::unique_ptr<QWidget> windowOf(const QStringList &arguments)
{
    if (arguments.isEmpty())
        return std::make_unique<QWidget>();
    if (arguments.size() == 1)
        return std::make_unique<QLabel>(arguments.first());
    return makeWindow(arguments.at(0), arguments.at(1), {});
}

/// Shows a window until it is painted once, and prints the seconds since `begin`: an empty one, one
/// with a word, or the till's for a settings file and a directory.
int paintOnce(Clock::time_point begin, const QStringList &arguments)
{
    const auto window = windowOf(arguments);
    if (!window)
        return 1;
    const PaintWatch watch(*window, [&] {
        QMetaObject::invokeMethod(
            qApp,
            [&] {
                std::printf("%.9f\n", secondsSince(begin));
                QCoreApplication::exit(0);
            },
            Qt::QueuedConnection);
    });
    window->showMaximized();
    return QApplication::exec();
}

int run(bool isQuick)
{
    Setup setup(isQuick);
    if (!setup.getError().isEmpty()) {
        std::fputs(qPrintable(setup.getError() + u'\n'), stderr);
        return 2;
    }
    const auto add = [&](const char *name, const QStringList &other) {
        benchmark::RegisterBenchmark(
            name, [&setup, other](auto &state) { firstPaint(state, setup, other); })
            ->UseManualTime()
            ->Iterations(isQuick ? 2 : 50);
    };
    add("firstPaint/empty", {});
    add("firstPaint/word", {QStringLiteral("Касса")});
    benchmark::RegisterBenchmark("addPosition",
                                 [&setup](auto &state) { addPosition(state, setup); })
        ->UseManualTime()
        ->Iterations(isQuick ? 1 : 5);
    const auto count = benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return count == 0 || anyFailed() ? 1 : 0;
}

} // namespace

} // namespace bench

int main(int argc, char *argv[])
{
    const auto begin = bench::Clock::now();
    qputenv("QT_QPA_PLATFORM", "offscreen");
    benchmark::Initialize(&argc, argv);
    const QApplication application(argc, argv);
    const auto arguments = QApplication::arguments();
    if (arguments.value(1) == QLatin1String("--paint"))
        return bench::paintOnce(begin, arguments.mid(2));
    return bench::run(arguments.contains(QStringLiteral("--quick")));
}
