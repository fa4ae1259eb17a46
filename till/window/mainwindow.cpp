#include "till/window/mainwindow.h"

#include "till/core/settingtable.h"
#include "till/core/till.h"
#include "till/core/toldtexts.h"
#include "till/window/named.h"
#include "till/window/progresscard.h"
#include "till/window/stateline.h"
#include "till/words/figures.h"
#include "till/words/saletext.h"

#include <host/serviceavailability.h>

#include <QAccessible>
#include <QAction>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QLocalSocket>
#include <QStackedWidget>
#include <QStorageInfo>
#include <QTableView>
#include <QToolButton>

namespace till {

namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

constexpr int badSetup = 2;              ///< The exit code, as of the console till.
constexpr qint64 minimumSpace = 1 << 20; ///< Bytes.

/// Whether the screen shows the event without a message.
bool showsByItself(const SaleEvent &event)
{
    using Kind = SaleEvent::Kind;
    return event.kind == Kind::Opened || event.kind == Kind::Identified ||
           (event.position.number > 0 && event.kind != Kind::Refused);
}

} // namespace

MainWindow::MainWindow(Settings given, bool delivers)
    : settings(std::move(given))
    , delivers(delivers)
    , frontSocket(settings.dataDirectory + "/window.socket"_L1)
    , presenter(*this)
    , till(settings, presenter)
    , scanner({std::chrono::milliseconds(settingNumber("Till:scanGap"_L1)),
               settingNumber("Till:scanLength"_L1), settingText("Till:scanPrefix"_L1)})
    , body(new QWidget(this))
{
    named(this, u"window"_s);
    named(body, u"body"_s);
    setWindowTitle(tr("Till"));
    setMinimumSize(320, 240);
    layOut();
    setFocusProxy(goodsLine);
    setFocus();
    connectTill();
    showReceipt({});
    tell(tr("The till is being opened ..."));
}

void MainWindow::start()
{
    till.start(tr("Opening the till"), delivers);
    const auto file = settingText("Till:goodsFile"_L1);
    if (file.isEmpty())
        return;
    goods = readGoods(file);
    state->showBadGoods(goods.problems.size());
    logTold(goods.problems.join(u'\n'));
}

void MainWindow::connectTill()
{
    const auto wait = [this] {
        progress->setSteps(presenter.isAsking() ? QStringList() : till.waiting());
    };
    connect(&till, &TillThread::started, this, &MainWindow::noteStart);
    connect(&till, &TillThread::happened, this, &MainWindow::noteEvent);
    connect(&till, &TillThread::mayNotEnd, this, &MainWindow::stay);
    connect(&till, &TillThread::ended, this, [this] { emit ended(isOpen ? 0 : badSetup); });
    connect(&till, &TillThread::waitingChanged, this, wait);
    connect(&presenter, &WindowPresenter::asking, this, wait);
    connect(&presenter, &WindowPresenter::progressChanged, progress, &ProgressCard::setText);
    connect(progress, &ProgressCard::shown, this, [this](bool on) {
        below->setCurrentIndex(on ? 1 : 0);
        refresh();
    });
    connect(&till, &TillThread::deliveryChanged, state, &StateLine::showDelivery);
    connect(&lookAtService, &QTimer::timeout, this,
            [this] { state->showService(Singleton<ServiceAvailability>::instance()->state()); });
    connect(state, &StateLine::refusedClicked, this, &MainWindow::showRefused);
    connect(state, &StateLine::badGoodsClicked, this, &MainWindow::showBadGoods);
    connect(&scanner, &ScanFilter::scanned, this, &MainWindow::takeScan);
    connect(&front, &QLocalServer::newConnection, this, [this] {
        delete front.nextPendingConnection();
        setWindowState(windowState() & ~Qt::WindowMinimized);
        raise();
        activateWindow();
    });
    connect(goodsLine, &QLineEdit::returnPressed, this, &MainWindow::sellTyped);
    connect(table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &MainWindow::refresh);
}

void MainWindow::noteStart(bool canSell, const QString &note)
{
    auto wrong = note.isEmpty() ? QStringList() : QStringList(note);
    for (const auto &problem : findProblems())
        wrong.append(u"%1 cannot be used; \"till check\" says why"_s.arg(problem.setting->key));
    logTold(wrong.join(u'\n'));
    if (!canSell) {
        QLocalSocket other;
        other.connectToServer(frontSocket);
        if (other.waitForConnected(1'000))
            emit ended(badSetup); // the other window is in front now
        else
            refuse(startProblem(), note + u'\n' + tr("Log: %1").arg(settings.logFile));
        return;
    }
    isOpen = true;
    QLocalServer::removeServer(frontSocket);
    front.listen(frontSocket);
    refresh();
    if (!MessageDialog::onTop(*this))
        setFocus();
    lookAtService.start(1s);
    tell(wrong.isEmpty()
             ? QString()
             : tr("The till found a fault when it started. You can go on selling. Call support."),
         !wrong.isEmpty());
}

/// Why the till did not start, and what the cashier can do about it.
QString MainWindow::startProblem() const
{
    if (ProcessLock::holderOf(Till::lockFile(settings.dataDirectory)))
        return tr("This till is selling already, in another window or at a terminal. Go on there.");
    if (!QFile::exists(settings.pluginFile))
        return tr("The loyalty plugin is missing. Call support: it must be installed again.");
    if (QStorageInfo(settings.dataDirectory).bytesAvailable() < minimumSpace)
        return tr("The disk is full. Make room on it, and start the till again.");
    return tr("The stored receipts are of a newer version of this till. Call support: that version "
              "must be installed.");
}

void MainWindow::refuse(const QString &reason, const QString &details)
{
    tell(tr("The till cannot sell."), true);
    auto *const dialog =
        new MessageDialog(*this, MessageDialog::Kind::Error,
                          {tr("The till cannot sell"), reason, {}, tr("Exit"), details});
    connect(dialog, &QDialog::finished, this, [this] { emit ended(badSetup); });
    dialog->appear();
}

void MainWindow::noteEvent(const SaleEvent &event, const std::optional<ReceiptView> &after)
{
    using Kind = SaleEvent::Kind;
    if (event.kind == Kind::Committed)
        closed = event;
    else if (event.kind == Kind::Opened || event.kind == Kind::Reopened)
        closed.reset();
    model.apply(event);
    if (TillThread::tellsReceipt(event))
        showReceipt(after);
    if (event.kind == Kind::NotStored && event.number > 0)
        unstored.insert(event.number);
    if (event.kind == Kind::StoredLate || event.kind == Kind::Cancelled)
        unstored.remove(event.number);
    state->showUnstored(unstored.size());
    if (const auto row = model.rowOf(event.position.number); row >= 0) {
        fitColumns(row);
        table->selectRow(row);
        table->scrollTo(model.index(row, 0));
    }
    if (!showsByItself(event)) {
        const auto text = eventText(event, after);
        logTold(text);
        tell(text, isProblem(event));
    }
    refresh();
}

void MainWindow::showReceipt(const std::optional<ReceiptView> &shown)
{
    receipt = shown;
    model.reset(shown ? shown->positions : QList<PositionView>());
    fitColumns();
    showCustomer(shown ? shown->customer : std::nullopt);
    if (shown || !closed)
        isReturn = shown && shown->header.kind != DocumentHeader::sale;
    const auto isReturnOpen = shown && isReturn;
    const auto words = isReturnOpen ? tr("Return %1") : tr("Sale %1");
    title->setText(shown ? words.arg(shown->header.num) : tr("No receipt is open"));
    commit->defaultAction()->setIconText(
        (isReturnOpen ? tr("Close the return") : tr("Close the receipt")) + u"\nF12"_s);
    mark(title, "return", isReturnOpen);
    mark(commit, "return", isReturnOpen);
    mark(totalCaption, "return", isReturn);
    mark(total, "return", isReturn);
}

/// Lists what is known of the customer, whose phone is confirmed.
void MainWindow::showCustomer(const std::optional<Client> &client)
{
    customer->clear();
    const auto add = [this](const QString &title, const QString &text, bool isTitled) {
        auto *const item =
            new QListWidgetItem(isTitled ? u"%1: %2"_s.arg(title, text) : text, customer);
        item->setData(Qt::AccessibleTextRole, QString(title + u' ' + text));
        return item;
    };
    if (!client) {
        customer->addItems({tr("No customer."), tr("F2 finds one by the phone.")});
        return;
    }
    const auto given = [](const QString &text) {
        return text.isEmpty() ? tr("not given") : text.simplified();
    };
    const auto isElectronic = client->hasOption(ClientOptions::ElectronicReceipt);
    QFont bold;
    bold.setBold(true);
    add(tr("Customer"), given(client->getName()), false)->setFont(bold);
    add(tr("Phone"), phoneLabel(client->getPhoneNumber()), false);
    add(tr("E-mail"), given(client->getEmail()), client->getEmail().isEmpty());
    add(tr("Birthday"), given(dateLabel(client->getBirthday())), true);
    add(tr("Receipts"), isElectronic ? tr("electronic") : tr("on paper"), true);
}

/// Shows the sum to pay, which stays until the next receipt.
void MainWindow::showTotal()
{
    auto caption = isReturn ? tr("Give back") : tr("Total");
    if (!receipt && closed)
        caption = (isReturn ? tr("Return %1 is closed.\nGive back") : tr("Receipt %1\nis closed"))
                      .arg(closed->number);
    totalCaption->setText(caption);
    total->setText(moneyLabel(receipt || !closed ? model.total() : closed->sum));
    total->setAccessibleName(caption + u' ' + total->text());
}

/// Updates total and buttons.
void MainWindow::refresh()
{
    const auto isFree = isOpen && !progress->isShown() && !isLeaving;
    showTotal();
    middle->setCurrentIndex(model.rowCount() > 0 ? 1 : 0);
    goodsLine->setEnabled(isOpen && !isLeaving);
    for (const auto &[action, isPossible] : std::as_const(steps))
        action->setEnabled(isFree && isPossible());
}

void MainWindow::tell(const QString &text, bool isProblem)
{
    message->setText(text);
    mark(message, "problem", isProblem);
    QAccessibleEvent event(message, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    event->ignore();
    leave();
}

/// Sends a key that nothing else takes to the line for goods, wherever the focus is.
void MainWindow::keyPressEvent(QKeyEvent *event)
{
    if (!goodsLine->isEnabled() || goodsLine->hasFocus() || MessageDialog::onTop(*this)) {
        QWidget::keyPressEvent(event);
        return;
    }
    goodsLine->setFocus();
    QCoreApplication::sendEvent(goodsLine, event);
}

} // namespace till
