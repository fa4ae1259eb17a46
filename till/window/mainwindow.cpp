#include "till/window/mainwindow.h"

#include "till/core/toldtexts.h"
#include "till/window/customerpanel.h"
#include "till/window/numberpad.h"
#include "till/window/progresscard.h"
#include "till/window/stateline.h"
#include "till/window/texts.h"

#include <QCloseEvent>
#include <QFile>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QStackedWidget>
#include <QStyle>
#include <QTableView>
#include <QVBoxLayout>

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
    setObjectName(QStringLiteral("window"));
    setWindowTitle(tr("Till"));
    setMinimumSize(1000, 700);
    body->setObjectName(QStringLiteral("body"));
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
    const auto read = std::make_shared<GoodsFile>();
    const auto bad = std::make_shared<QList<GoodsFile::BadLine>>();
    till.run([this, read, bad] { *bad = read->load(setup.goodsFile); },
             [this, read, bad] {
                 goods = read;
                 noteGoods(*bad);
             });
}

void MainWindow::layOut()
{
    auto *const outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addWidget(body);
    auto *const column = new QVBoxLayout(body);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addLayout(layOutHead());
    auto *const row = new QHBoxLayout;
    row->setContentsMargins(12, 8, 12, 8);
    row->setSpacing(12);
    row->addLayout(layOutReceipt(), 1);
    row->addWidget(layOutSide());
    column->addLayout(row, 1);
    column->addLayout(layOutSteps());
    state = new StateLine(body);
    column->addWidget(state);
}

QLayout *MainWindow::layOutHead()
{
    auto *const row = new QHBoxLayout;
    row->setContentsMargins(12, 8, 12, 0);
    row->setSpacing(8);
    title = new QLabel(body);
    title->setObjectName(QStringLiteral("receiptTitle"));
    place = new QLabel(body);
    place->setObjectName(QStringLiteral("place"));
    row->addWidget(title);
    row->addStretch();
    row->addWidget(place);
    row->addSpacing(8);
    addStep(*row, "closeShift", tr("Close the shift"), 0, &MainWindow::closeShift);
    addStep(*row, "leave", tr("Leave"), 0, &MainWindow::leave);
    return row;
}

QLayout *MainWindow::layOutReceipt()
{
    goodsLine = new QLineEdit(body);
    goodsLine->setObjectName(QStringLiteral("goods"));
    goodsLine->setAccessibleName(tr("Goods"));
    goodsLine->setPlaceholderText(tr("Scan, or type a code and Enter; 3*4601 sells three"));
    goodsLine->setContextMenuPolicy(Qt::NoContextMenu);
    goodsLine->installEventFilter(this);
    table = new QTableView(body);
    table->setObjectName(QStringLiteral("positions"));
    table->setAccessibleName(tr("Receipt"));
    table->setModel(&model);
    table->setFocusPolicy(Qt::NoFocus);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setSelectionMode(QAbstractItemView::SingleSelection);
    table->setShowGrid(false);
    table->setAlternatingRowColors(true);
    table->verticalHeader()->hide();
    table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table->verticalHeader()->setDefaultSectionSize(44);
    auto *const columns = table->horizontalHeader();
    columns->setSectionResizeMode(QHeaderView::Fixed);
    columns->setSectionResizeMode(ReceiptModel::Name, QHeaderView::Stretch);
    columns->setHighlightSections(false);
    for (const auto &[column, width] : {std::pair(ReceiptModel::Number, 44),
                                        {ReceiptModel::Quantity, 90},
                                        {ReceiptModel::Price, 110},
                                        {ReceiptModel::Discount, 100},
                                        {ReceiptModel::Sum, 120}})
        columns->resizeSection(column, width);
    auto *const empty = new QLabel(tr("Scan the first goods, or type a code and press Enter.\n"
                                      "The receipt opens by itself.\n\n"
                                      "F2 finds the customer by the phone."),
                                   body);
    empty->setObjectName(QStringLiteral("empty"));
    empty->setAlignment(Qt::AlignCenter);
    middle = new QStackedWidget(body);
    middle->addWidget(empty);
    middle->addWidget(table);
    message = new QLabel(body);
    message->setObjectName(QStringLiteral("message"));
    message->setTextFormat(Qt::PlainText);
    message->setWordWrap(true);
    message->setMinimumHeight(44);
    auto *const column = new QVBoxLayout;
    column->setSpacing(8);
    column->addWidget(goodsLine);
    column->addWidget(middle, 1);
    column->addWidget(message);
    return column;
}

QWidget *MainWindow::layOutSide()
{
    constexpr int width = 304;
    auto *const side = new QWidget(body);
    side->setFixedWidth(width);
    customer = new CustomerPanel(body);
    auto *const buttons = new QHBoxLayout;
    buttons->setSpacing(6);
    addStep(*buttons, "identify", tr("Customer"), Qt::Key_F2, &MainWindow::identify);
    addStep(*buttons, "edit", tr("Edit"), Qt::Key_F3, &MainWindow::edit);
    addStep(*buttons, "takeOff", tr("Take off"), Qt::Key_F4, &MainWindow::takeCustomerOff);
    auto *const totalTitle = new QLabel(tr("Total"), body);
    totalTitle->setObjectName(QStringLiteral("label"));
    total = new QLabel(body);
    total->setObjectName(QStringLiteral("total"));
    total->setAccessibleName(tr("Total"));
    total->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    auto *const column = new QVBoxLayout(side);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(8);
    column->addWidget(customer, 1);
    column->addLayout(buttons);
    column->addWidget(new NumberPad(NumberPad::Keys::Goods, body));
    column->addWidget(totalTitle);
    column->addWidget(total);
    return side;
}

QLayout *MainWindow::layOutSteps()
{
    auto *const row = new QHBoxLayout;
    row->setContentsMargins(12, 0, 12, 8);
    row->setSpacing(6);
    addStep(*row, "quantity", tr("Quantity"), Qt::Key_F5, &MainWindow::changeQuantity);
    addStep(*row, "discount", tr("Discount"), Qt::Key_F6, &MainWindow::discount);
    addStep(*row, "remove", tr("Remove"), Qt::Key_F7, &MainWindow::remove);
    addStep(*row, "undo", tr("Undo"), Qt::Key_F8, &MainWindow::undoLast);
    addStep(*row, "return", tr("Return"), Qt::Key_F9, &MainWindow::openReturn);
    addStep(*row, "abandon", tr("Abandon"), Qt::Key_F10, &MainWindow::abandon);
    row->addStretch();
    addStep(*row, "commit", tr("Close the receipt"), Qt::Key_F12, &MainWindow::commit)
        ->setFixedWidth(304);
    return row;
}

QPushButton *MainWindow::addStep(QBoxLayout &row, const char *name, const QString &text, int key,
                                 Step step)
{
    auto *const button = new QPushButton(text, body);
    button->setObjectName(QLatin1String(name));
    button->setAccessibleName(text);
    button->setMinimumHeight(key == 0 ? 44 : 56);
    // A click leaves the focus where the scanner needs it.
    button->setFocusPolicy(Qt::TabFocus);
    if (key != 0) {
        const QKeySequence keys(key);
        button->setText(text + u'\n' + keys.toString());
        // A shortcut of the button's own would wait a tenth of a second before it clicks.
        connect(new QShortcut(keys, button), &QShortcut::activated, button, &QPushButton::click);
    }
    connect(button, &QPushButton::clicked, this, step);
    row.addWidget(button);
    steps.insert(name, button);
    return button;
}

void MainWindow::connectTill()
{
    const auto wait = [this] { progress->setWaiting(till.isBusy() && !presenter.isAsking()); };
    connect(&till, &TillThread::started, this, &MainWindow::noteStart);
    connect(&till, &TillThread::happened, this, &MainWindow::noteEvent);
    connect(&till, &TillThread::mayNotEnd, this, &MainWindow::stay);
    connect(&till, &TillThread::ended, this, [this] { emit ended(0); });
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
    ToldTexts::note(note);
    isOpen = canSell;
    refresh();
    if (canSell) {
        goodsLine->setFocus();
        watch.start();
        tell(note.isEmpty() ? QString()
                            : tr("Something was found wrong at the start. Sell on, and call the "
                                 "one who looks after the till: its log says what."),
             !note.isEmpty());
        return;
    }
    tell(tr("The till cannot sell."), true);
    auto *const dialog = new MessageDialog(
        *this, MessageDialog::Kind::Error,
        tr("The till cannot sell. Perhaps it is open in another window already; else call the one "
           "who looks after it. Its log says why:\n%1")
            .arg(setup.till.logFile),
        tr("Leave"));
    connect(dialog, &QDialog::finished, this, [this] { emit ended(badSetup); });
    dialog->appear();
}

void MainWindow::noteEvent(const SaleEvent &event, const std::optional<ReceiptView> &after)
{
    undo.note(event, model.find(event.position.number));
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
    title->setText(!shown            ? tr("No receipt is open")
                   : shown->isReturn ? tr("Return %1").arg(shown->number)
                                     : tr("Sale %1").arg(shown->number));
    title->setProperty("return", shown && shown->isReturn);
    title->style()->polish(title);
    place->setText(
        tr("shop %1, till %2").arg(setup.till.place.shopCode).arg(setup.till.place.cashCode));
}

/// Brings total and buttons up to date.
void MainWindow::refresh()
{
    const auto isFree = isOpen && !progress->isVisible() && !isLeaving;
    const auto isSelected = selected().has_value();
    const auto isCustomer = receipt && receipt->customer;
    constexpr int usual = 10; // characters that the large figures have room for
    total->setText(moneyLabel(model.total()));
    total->setProperty("long", total->text().size() > usual);
    total->style()->polish(total);
    middle->setCurrentIndex(model.rowCount() > 0 ? 1 : 0);
    goodsLine->setEnabled(isOpen);
    const auto enable = [&](const char *step, bool on) { steps[step]->setEnabled(isFree && on); };
    enable("identify", true);
    enable("edit", isCustomer);
    enable("takeOff", isCustomer);
    enable("quantity", isSelected);
    enable("discount", isSelected);
    enable("remove", isSelected);
    enable("undo", undo.canBegin());
    enable("return", !receipt);
    enable("abandon", receipt.has_value());
    enable("commit", model.rowCount() > 0);
    enable("closeShift", !receipt);
}

void MainWindow::tell(const QString &text, bool isProblem)
{
    message->setText(text);
    message->setProperty("problem", isProblem);
    message->style()->polish(message);
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    event->ignore();
    leave();
}

/// Lets the keys that choose a position work while the line for goods has the focus.
bool MainWindow::eventFilter(QObject * /*watched*/, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return false;
    const auto row = table->currentIndex().row();
    switch (static_cast<QKeyEvent *>(event)->key()) {
    case Qt::Key_Up:
        table->selectRow(std::max(row - 1, 0));
        return true;
    case Qt::Key_Down:
        table->selectRow(std::min(row + 1, model.rowCount() - 1));
        return true;
    case Qt::Key_Escape:
        goodsLine->clear();
        return true;
    default:
        return false;
    }
}

} // namespace till
