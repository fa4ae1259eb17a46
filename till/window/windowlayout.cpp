// Where what stands in the window.
#include "till/core/sale.h"
#include "till/window/customerpanel.h"
#include "till/window/mainwindow.h"
#include "till/window/named.h"
#include "till/window/numberpad.h"
#include "till/window/progresscard.h"
#include "till/window/stateline.h"

#include <host/abstractdocument.h>
#include <host/action.h>

#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QStackedWidget>
#include <QTableView>
#include <QVBoxLayout>

namespace till {

namespace {

constexpr int edge = 12;
constexpr int sideWidth = 304;

QTableView *makeTable(ReceiptModel &model, QWidget *parent)
{
    auto *const table = new QTableView(parent);
    table->setModel(&model);
    table->setFocusPolicy(Qt::NoFocus);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setSelectionMode(QAbstractItemView::SingleSelection);
    table->setShowGrid(false);
    table->setAlternatingRowColors(true);
    table->verticalHeader()->hide();
    table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table->verticalHeader()->setDefaultSectionSize(48);
    auto *const columns = table->horizontalHeader();
    columns->setSectionResizeMode(QHeaderView::Fixed);
    columns->setSectionResizeMode(ReceiptModel::Name, QHeaderView::Stretch);
    columns->setHighlightSections(false);
    for (const auto &[column, width] : {std::pair(ReceiptModel::Number, 44),
                                        {ReceiptModel::Quantity, 84},
                                        {ReceiptModel::Price, 100},
                                        {ReceiptModel::Discount, 92},
                                        {ReceiptModel::Sum, 112}})
        columns->resizeSection(column, width);
    return table;
}

} // namespace

/// The body, and over its line for messages what the till waits for.
void MainWindow::layOut()
{
    constexpr int underMessage = 112; // height of the steps and the state line
    auto *const outer = new QGridLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->setSpacing(0);
    outer->addWidget(body, 0, 0, -1, -1);
    outer->addWidget(progress, 1, 0, Qt::AlignCenter);
    outer->setRowStretch(0, 1);
    outer->setRowMinimumHeight(2, underMessage);
    outer->setColumnStretch(0, 1);
    outer->setColumnMinimumWidth(1, sideWidth + edge);
    auto *const column = new QVBoxLayout(body);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addLayout(layOutHead());
    auto *const row = new QHBoxLayout;
    row->setContentsMargins(edge, 8, edge, 8);
    row->setSpacing(edge);
    row->addLayout(layOutReceipt(), 1);
    row->addWidget(layOutSide());
    column->addLayout(row, 1);
    column->addLayout(layOutSteps());
    state = new StateLine(body);
    column->addWidget(state);
    addKeys();
}

QLayout *MainWindow::layOutHead()
{
    auto *const row = new QHBoxLayout;
    row->setContentsMargins(edge, 8, edge, 0);
    row->setSpacing(8);
    title = named(new QLabel(body), QStringLiteral("receiptTitle"));
    const auto &[shop, cash] = setup.till.place;
    auto *const place = new QLabel(tr("shop %1, till %2").arg(shop).arg(cash), body);
    row->addWidget(title);
    row->addStretch();
    row->addWidget(named(place, QStringLiteral("place")));
    row->addSpacing(8);
    addStep(
        *row, "closeShift", tr("Close the shift"), 0, [this] { closeShift(); },
        [this] { return !receipt; });
    addStep(*row, "leave", tr("Leave"), 0, [this] { leave(); });
    return row;
}

QLayout *MainWindow::layOutReceipt()
{
    goodsLine = named(new QLineEdit(body), QStringLiteral("goods"), tr("Goods"));
    goodsLine->setPlaceholderText(tr("Scan, or type a code and Enter; 3*4601 sells three"));
    goodsLine->setContextMenuPolicy(Qt::NoContextMenu);
    table = named(makeTable(model, body), QStringLiteral("positions"), tr("Receipt"));
    auto *const empty = new QLabel(tr("Scan the first goods, or type a code and press Enter.\n"
                                      "The receipt opens by itself.\n\n"
                                      "F2 finds the customer by the phone."),
                                   body);
    empty->setAlignment(Qt::AlignCenter);
    middle = new QStackedWidget(body);
    middle->addWidget(named(empty, QStringLiteral("empty")));
    middle->addWidget(table);
    message = named(new QLabel(body), QStringLiteral("message"));
    message->setTextFormat(Qt::PlainText);
    message->setWordWrap(true);
    auto *const column = new QVBoxLayout;
    column->setSpacing(8);
    column->addWidget(goodsLine);
    column->addWidget(middle, 1);
    column->addWidget(message);
    return column;
}

QWidget *MainWindow::layOutSide()
{
    auto *const side = new QWidget(body);
    side->setFixedWidth(sideWidth);
    customer = new CustomerPanel(body);
    const auto isCustomer = [this] { return receipt && receipt->customer; };
    auto *const buttons = new QHBoxLayout;
    buttons->setSpacing(6);
    addStep(
        *buttons, "identify", tr("Customer"), Qt::Key_F2, [this] { identify(); },
        [] { return true; });
    addStep(
        *buttons, "edit", tr("Edit"), Qt::Key_F3,
        [this] { sell([](Sale &sale) { sale.trigger(control::Action::editCustomer); }); },
        isCustomer);
    addStep(
        *buttons, "takeOff", tr("Take off"), Qt::Key_F4,
        [this] { sell([](Sale &sale) { sale.clearLoyaltyData(); }); }, isCustomer);
    total = named(new QLabel(body), QStringLiteral("total"), tr("Total"));
    total->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    auto *const column = new QVBoxLayout(side);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(8);
    column->addWidget(customer, 1);
    column->addLayout(buttons);
    column->addWidget(new NumberPad(NumberPad::Keys::Goods, body));
    column->addWidget(named(new QLabel(tr("Total"), body), QStringLiteral("label")));
    column->addWidget(total);
    return side;
}

QLayout *MainWindow::layOutSteps()
{
    const auto isSelected = [this] { return selected().has_value(); };
    auto *const row = new QHBoxLayout;
    row->setContentsMargins(edge, 0, edge, 8);
    row->setSpacing(6);
    addStep(*row, "quantity", tr("Quantity"), Qt::Key_F5, [this] { changeQuantity(); }, isSelected);
    addStep(*row, "discount", tr("Discount"), Qt::Key_F6, [this] { discount(); }, isSelected);
    addStep(*row, "remove", tr("Remove"), Qt::Key_F7, [this] { remove(); }, isSelected);
    addStep(
        *row, "undo", tr("Undo"), Qt::Key_F8, [this] { undoLast(); },
        [this] { return undo.canBegin(); });
    addStep(
        *row, "return", tr("Return"), Qt::Key_F9,
        [this] { sell([](Sale &sale) { sale.open(DocumentHeader::returned); }); },
        [this] { return !receipt; });
    addStep(
        *row, "abandon", tr("Abandon"), Qt::Key_F10, [this] { abandon(); },
        [this] { return receipt.has_value(); });
    row->addStretch();
    addStep(
        *row, "commit", tr("Close the receipt"), Qt::Key_F12,
        [this] { sell([](Sale &sale) { sale.commit(); }); },
        [this] { return model.rowCount() > 0; })
        ->setFixedWidth(sideWidth);
    return row;
}

/// Keys that work while the line for goods has the focus: to choose a position, to type anew.
void MainWindow::addKeys()
{
    const auto onKey = [this](Qt::Key key, const Step &step) {
        connect(new QShortcut(key, body), &QShortcut::activated, this, step);
    };
    const auto row = [this] { return table->currentIndex().row(); };
    onKey(Qt::Key_Up, [=, this] { table->selectRow(std::max(row() - 1, 0)); });
    onKey(Qt::Key_Down, [=, this] { table->selectRow(std::min(row() + 1, model.rowCount() - 1)); });
    onKey(Qt::Key_Escape, [this] { goodsLine->clear(); });
}

/// A button. `isPossible` says when it can be pressed while the till is free; without it, always.
QPushButton *MainWindow::addStep(QBoxLayout &row, const char *name, const QString &text, int key,
                                 const Step &step, const std::function<bool()> &isPossible)
{
    auto *const button = named(new QPushButton(text, body), QLatin1String(name), text);
    // A click leaves the focus where the scanner needs it.
    button->setFocusPolicy(Qt::TabFocus);
    if (key != 0) {
        const QKeySequence keys(key);
        button->setText(text + u'\n' + keys.toString());
        button->setProperty("key", true);
        // A shortcut of the button's own would wait a tenth of a second before it clicks.
        connect(new QShortcut(keys, button), &QShortcut::activated, button, &QPushButton::click);
    }
    connect(button, &QPushButton::clicked, this, step);
    row.addWidget(button);
    if (isPossible)
        steps.append({button, isPossible});
    return button;
}

} // namespace till
