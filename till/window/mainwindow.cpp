#include "till/window/mainwindow.h"

#include "till/core/toldtexts.h"
#include "till/window/customerpanel.h"
#include "till/window/named.h"
#include "till/window/progresscard.h"
#include "till/window/stateline.h"
#include "till/window/texts.h"

#include <QCloseEvent>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStackedWidget>
#include <QTableView>

namespace till {

namespace {

constexpr int badSetup = 2; ///< Exit code, as of the till on a terminal.

} // namespace

MainWindow::MainWindow(WindowSetup given)
    : setup(std::move(given))
    , presenter(*this)
    , till(setup.till, presenter)
    , watch(setup.till.dataDirectory, setup.service)
    , goods(std::make_shared<GoodsFile>())
    , campaign(QStringLiteral("1"))
    , body(new QWidget(this))
    , progress(new ProgressCard(*this))
{
    named(this, QStringLiteral("window"));
    named(body, QStringLiteral("body"));
    setWindowTitle(tr("Till"));
    setMinimumSize(1000, 700);
    if (QFile style(QStringLiteral(":/window.qss")); style.open(QIODevice::ReadOnly))
        setStyleSheet(QString::fromUtf8(style.readAll()));
    layOut();
    connectTill();
    showReceipt({});
    tell(tr("The till is being opened ..."));
}

MainWindow::~MainWindow() = default;

void MainWindow::start()
{
    till.start(setup.delivers);
    if (setup.goodsFile.isEmpty())
        return;
    till.run([this] {
        const auto read = std::make_shared<GoodsFile>();
        QMetaObject::invokeMethod(this, [this, read, bad = read->load(setup.goodsFile)] {
            goods = read;
            noteGoods(bad);
        });
    });
}

void MainWindow::connectTill()
{
    const auto wait = [this] { progress->setWaiting(till.isBusy() && !presenter.isAsking()); };
    connect(&till, &TillThread::started, this, &MainWindow::noteStart);
    connect(&till, &TillThread::happened, this, &MainWindow::noteEvent);
    connect(&till, &TillThread::mayNotEnd, this, &MainWindow::stay);
    connect(&till, &TillThread::ended, this, [this] { emit ended(isOpen ? 0 : badSetup); });
    connect(&till, &TillThread::busyChanged, this, wait);
    connect(&till, &TillThread::stepEnded, &presenter, &WindowPresenter::endStep);
    connect(&presenter, &WindowPresenter::asking, this, wait);
    connect(&presenter, &WindowPresenter::progressChanged, progress, &ProgressCard::setText);
    connect(progress, &ProgressCard::shown, this, &MainWindow::refresh);
    connect(&watch, &StateWatch::looked, this, [this](const TillState &now) {
        looked = now;
        state->show(now);
    });
    connect(state, &StateLine::refusedClicked, this, &MainWindow::showRefused);
    connect(goodsLine, &QLineEdit::returnPressed, this, &MainWindow::sellTyped);
    connect(table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &MainWindow::refresh);
}

void MainWindow::noteStart(bool canSell, const QString &note)
{
    auto wrong = setup.complaints;
    if (!note.isEmpty())
        wrong.append(note);
    for (const auto &text : std::as_const(wrong))
        ToldTexts::note(text);
    if (!canSell) {
        refuse(tr("The till cannot sell. Perhaps it is open in another window already; else call "
                  "the one who looks after it. Its log says why:\n%1")
                   .arg(setup.till.logFile));
        return;
    }
    isOpen = true;
    refresh();
    goodsLine->setFocus();
    watch.start();
    tell(wrong.isEmpty() ? QString()
                         : tr("Something was found wrong at the start. Sell on, and call the one "
                              "who looks after the till: its log says what."),
         !wrong.isEmpty());
}

void MainWindow::refuse(const QString &reason)
{
    tell(tr("The till cannot sell."), true);
    auto *const dialog = new MessageDialog(*this, MessageDialog::Kind::Error, reason, tr("Leave"));
    connect(dialog, &QDialog::finished, this, [this] { emit ended(badSetup); });
    dialog->appear();
}

void MainWindow::noteEvent(const SaleEvent &event, const std::optional<ReceiptView> &after)
{
    undo.note(event, model.position(model.rowOf(event.position.number)));
    model.apply(event);
    if (TillThread::tellsReceipt(event.kind))
        showReceipt(after);
    if (event.kind == SaleEvent::Kind::NotStored && event.number > 0)
        unstored.insert(event.number);
    if (event.kind == SaleEvent::Kind::StoredLate || event.kind == SaleEvent::Kind::Cancelled)
        unstored.remove(event.number);
    state->showUnstored(unstored.size());
    if (const auto row = model.rowOf(event.position.number); row >= 0) {
        table->selectRow(row);
        table->scrollTo(model.index(row, 0));
    }
    if (const auto text = eventText(event); !text.isEmpty()) {
        ToldTexts::note(text);
        tell(text, isProblem(event));
    }
    refresh();
    if (isOpen)
        watch.look();
}

void MainWindow::noteGoods(const QList<GoodsFile::BadLine> &bad)
{
    constexpr int most = 8;
    if (bad.isEmpty())
        return;
    QStringList lines{tr("Not all goods can be sold by their code. In %1:").arg(setup.goodsFile)};
    for (const auto &line : bad.first(std::min<qsizetype>(most, bad.size())))
        lines.append(badLineText(line));
    if (bad.size() > most)
        lines.append(tr("and %n more line(s)", nullptr, static_cast<int>(bad.size() - most)));
    const auto text = lines.join(u'\n');
    ToldTexts::note(text);
    (new MessageDialog(*this, MessageDialog::Kind::Error, text, tr("OK")))->appear();
}

void MainWindow::showReceipt(const std::optional<ReceiptView> &shown)
{
    receipt = shown;
    model.reset(shown ? shown->positions : QList<PositionView>());
    customer->show(shown ? shown->customer : std::nullopt);
    const auto isReturn = shown && shown->header.kind != DocumentHeader::sale;
    title->setText(!shown     ? tr("No receipt is open")
                   : isReturn ? tr("Return %1").arg(shown->header.num)
                              : tr("Sale %1").arg(shown->header.num));
    mark(title, "return", isReturn);
}

/// Brings total and buttons up to date.
void MainWindow::refresh()
{
    const auto isFree = isOpen && !progress->isVisible() && !isLeaving;
    constexpr int usual = 10; // characters that the large figures have room for
    total->setText(moneyLabel(model.total()));
    mark(total, "long", total->text().size() > usual);
    middle->setCurrentIndex(model.rowCount() > 0 ? 1 : 0);
    goodsLine->setEnabled(isOpen);
    for (const auto &[button, isPossible] : std::as_const(steps))
        button->setEnabled(isFree && isPossible());
}

void MainWindow::tell(const QString &text, bool isProblem)
{
    message->setText(text);
    mark(message, "problem", isProblem);
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    event->ignore();
    leave();
}

} // namespace till
