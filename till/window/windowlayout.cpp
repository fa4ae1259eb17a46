// The layout of the window.
#include "till/core/sale.h"
#include "till/window/mainwindow.h"
#include "till/window/named.h"
#include "till/window/numberpad.h"
#include "till/window/progresscard.h"
#include "till/window/stateline.h"
#include "till/window/style.h"

#include <host/abstractdocument.h>
#include <host/action.h>

#include <QAction>
#include <QGridLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QListWidget>
#include <QScrollBar>
#include <QScroller>
#include <QShortcut>
#include <QStackedWidget>
#include <QTableView>
#include <QToolButton>
#include <QVBoxLayout>

namespace till {

namespace {

using namespace Qt::StringLiterals;

constexpr int edge = 10;
constexpr int gap = 6;

QHBoxLayout *makeRow(QWidget *page = nullptr, int top = 0)
{
    auto *const row = new QHBoxLayout(page);
    row->setContentsMargins(edge, top, edge, 0);
    row->setSpacing(gap);
    return row;
}

QVBoxLayout *makeColumn(QWidget *page = nullptr)
{
    auto *const column = new QVBoxLayout(page);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(gap);
    return column;
}

QTableView *makeTable(ReceiptModel &model, QWidget *parent)
{
    auto *const table = new QTableView(parent);
    table->setModel(&model);
    table->setFocusPolicy(Qt::NoFocus);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setSelectionMode(QAbstractItemView::SingleSelection);
    table->setShowGrid(false);
    table->setAlternatingRowColors(true);
    table->setWordWrap(false);
    table->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    table->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    QScroller::grabGesture(table->viewport(), QScroller::TouchGesture);
    table->verticalHeader()->hide();
    table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    auto *const columns = table->horizontalHeader();
    columns->setMinimumSectionSize(10);
    columns->setSectionResizeMode(QHeaderView::Fixed);
    columns->setSectionResizeMode(ReceiptModel::Name, QHeaderView::Stretch);
    columns->setHighlightSections(false);
    return table;
}

} // namespace

void MainWindow::layOut()
{
    auto *const outer = new QGridLayout(this); // a dialog's curtain covers the grid
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addWidget(body, 0, 0);
    auto *const column = makeColumn(body);
    column->addLayout(layOutHead());
    auto *const row = makeRow();
    row->setSpacing(edge);
    row->addLayout(layOutReceipt(), 1);
    row->addWidget(layOutSide());
    column->addLayout(row, 1);
    column->addLayout(layOutTotal());
    column->addWidget(layOutSteps());
    state = new StateLine(body);
    column->addWidget(state);
    addKeys();
}

QLayout *MainWindow::layOutHead()
{
    auto *const row = makeRow(nullptr, gap);
    title = makeLabel(body, u"receiptTitle"_s);
    const auto &[shop, cash] = settings.place;
    row->addWidget(title);
    row->addStretch();
    row->addWidget(makeLabel(body, u"place"_s, tr("shop %1, till %2").arg(shop).arg(cash)));
    addStep(
        *row, "closeShift", tr("Close the shift"), {}, [this] { closeShift(); },
        [this] { return !receipt; });
    addStep(*row, "leave", tr("Exit"), {}, [this] { leave(); }, {});
    return row;
}

QLayout *MainWindow::layOutReceipt()
{
    goodsLine = named(new QLineEdit(body), u"goods"_s, tr("Goods"));
    goodsLine->setPlaceholderText(tr("Scan, or type a code and Enter; 3*4601 sells three"));
    goodsLine->setContextMenuPolicy(Qt::NoContextMenu);
    table = named(makeTable(model, body), u"positions"_s, tr("Receipt"));
    auto *const empty = makeLabel(body, u"empty"_s,
                                  tr("Scan the first goods, or type a code and press Enter.\n"
                                     "The receipt opens by itself.\n\n"
                                     "F2 finds the customer by the phone."));
    empty->setAlignment(Qt::AlignCenter);
    empty->setWordWrap(true);
    middle = new QStackedWidget(body);
    middle->addWidget(empty);
    middle->addWidget(table);
    auto *const column = makeColumn();
    column->addWidget(goodsLine);
    column->addWidget(layOutUnknown());
    column->addWidget(middle, 1);
    return column;
}

QWidget *MainWindow::layOutUnknown()
{
    unknownRow = new QWidget(body);
    unknownText = makeLabel(unknownRow, u"unknown"_s);
    unknownText->setWordWrap(true);
    auto *const row = makeRow(unknownRow);
    row->addWidget(unknownText, 1);
    addStep(*row, "sellUnknown", tr("Sell it all the same"), Qt::Key_F8, [this] { sellUnknown(); });
    unknownRow->hide();
    return unknownRow;
}

QWidget *MainWindow::layOutSide()
{
    side = new QWidget(body);
    customer = named(new QListWidget(side), u"customer"_s, tr("Customer"));
    customer->setFocusPolicy(Qt::NoFocus);
    customer->setSelectionMode(QAbstractItemView::NoSelection);
    customer->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    customer->setMinimumHeight(1); // the pad never gives way
    QScroller::grabGesture(customer->viewport(), QScroller::TouchGesture);
    const auto isCustomer = [this] { return receipt && receipt->customer; };
    auto *const buttons = makeRow();
    buttons->setContentsMargins(0, 0, 0, 0);
    addStep(*buttons, "identify", tr("Customer"), Qt::Key_F2, [this] { identify(); });
    addStep(
        *buttons, "edit", tr("Edit"), Qt::Key_F3,
        [this] {
            presenter.setAbout({});
            sell(tr("Asking for the customer's data"),
                 [](Sale &sale) { sale.trigger(control::Action::editCustomer); });
        },
        isCustomer);
    addStep(
        *buttons, "takeOff", tr("Remove", "the customer"), Qt::Key_F4,
        [this] { sell(tr("Removing the customer"), [](Sale &sale) { sale.clearLoyaltyData(); }); },
        isCustomer);
    pad = new NumberPad(NumberPad::Keys::Goods, side);
    auto *const column = makeColumn(side);
    column->addWidget(customer, 1);
    column->addLayout(buttons);
    column->addWidget(pad);
    return side;
}

QLayout *MainWindow::layOutTotal()
{
    message = makeLabel(body, u"message"_s);
    message->setWordWrap(true);
    message->setMinimumWidth(1);
    // A long message is cut, so that it does not move the total.
    message->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    totalCaption = makeLabel(body, u"totalCaption"_s);
    totalCaption->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    total = makeLabel(body, u"total"_s);
    auto *const row = makeRow();
    row->setSpacing(edge);
    row->addWidget(message, 1);
    row->addWidget(totalCaption);
    row->addWidget(total);
    return row;
}

/// The steps. The progress replaces them during a wait, when no step can be taken.
QWidget *MainWindow::layOutSteps()
{
    const auto isSelected = [this] { return selected().has_value(); };
    auto *const page = new QWidget(body);
    auto *const row = makeRow(page);
    addStep(*row, "quantity", tr("Quantity"), Qt::Key_F5, [this] { changeQuantity(); }, isSelected);
    addStep(*row, "discount", tr("Discount"), Qt::Key_F6, [this] { discount(); }, isSelected);
    addStep(*row, "remove", tr("Remove"), Qt::Key_F7, [this] { remove(); }, isSelected);
    addStep(
        *row, "return", tr("Return"), Qt::Key_F9,
        [this] {
            sell(tr("Opening a return"), [](Sale &sale) { sale.open(DocumentHeader::returned); });
        },
        [this] { return !receipt; });
    addStep(
        *row, "abandon", tr("Cancel receipt"), Qt::Key_F10, [this] { abandon(); },
        [this] { return receipt.has_value(); });
    row->addStretch();
    commit = addStep(
        *row, "commit", tr("Close the receipt"), Qt::Key_F12,
        [this] { sell(tr("Closing the receipt"), [](Sale &sale) { sale.commit(); }); },
        [this] { return model.rowCount() > 0; });
    progress = new ProgressCard(body);
    below = new QStackedWidget(body);
    below->addWidget(page);
    below->addWidget(progress);
    below->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    return below;
}

/// Adds keys that work in the line for goods: to select a position, and to clear the line.
void MainWindow::addKeys()
{
    const auto onKey = [this](Qt::Key key, const Step &step) {
        connect(new QShortcut(key, body), &QShortcut::activated, this, step);
    };
    const auto row = [this] { return table->currentIndex().row(); };
    onKey(Qt::Key_Up, [=, this] { table->selectRow(std::max(row() - 1, 0)); });
    onKey(Qt::Key_Down, [=, this] { table->selectRow(std::min(row() + 1, model.rowCount() - 1)); });
    onKey(Qt::Key_Escape, [this] {
        goodsLine->clear();
        noteUnknown({});
    });
}

/// Adds a step with its button and key. A step without `isPossible` can be taken even while the
/// till is busy.
QToolButton *MainWindow::addStep(QHBoxLayout &row, const char *name, const QString &text,
                                 const QKeySequence &keys, const Step &step,
                                 const Condition &isPossible)
{
    auto *const action = new QAction(text, body);
    action->setShortcut(keys);
    action->setToolTip({});
    action->setIconText(keys.isEmpty() ? text : text + u'\n' + keys.toString());
    connect(action, &QAction::triggered, this, step);
    auto *const button = named(new QToolButton(body), QLatin1StringView(name), text);
    button->setDefaultAction(action);
    button->setFocusPolicy(Qt::NoFocus); // the line for goods keeps the focus
    button->setProperty("key", !keys.isEmpty());
    button->setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
    row.addWidget(button);
    if (isPossible)
        steps.append({action, isPossible});
    return button;
}

/// Widens the columns of numbers for a row, or for all rows; the names get the rest.
void MainWindow::fitColumns(std::optional<int> row)
{
    for (int column = 0; column < ReceiptModel::ColumnCount; ++column) {
        if (column == ReceiptModel::Name)
            continue;
        auto width =
            row ? table->columnWidth(column) : table->horizontalHeader()->sectionSizeHint(column);
        const auto end = row ? *row + 1 : model.rowCount();
        for (int i = row.value_or(0); i < end; ++i)
            width = std::max(width, table->sizeHintForIndex(model.index(i, column)).width());
        table->setColumnWidth(column, width);
    }
}

void MainWindow::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    constexpr int rowHeight = 48;
    const auto folds = foldsPad(size());
    const auto unit = unitFor(size());
    dress(*this);
    pad->setHidden(folds);
    side->setFixedWidth(qRound((folds ? 290 : 304) * unit));
    commit->setFixedWidth(folds ? qRound(230 * unit) : side->width());
    table->verticalHeader()->setDefaultSectionSize(qRound(rowHeight * unit));
    fitColumns();
}

} // namespace till
