// Where what stands in the window.
#include "till/window/customerpanel.h"
#include "till/window/mainwindow.h"
#include "till/window/numberpad.h"
#include "till/window/stateline.h"

#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QStackedWidget>
#include <QTableView>
#include <QVBoxLayout>

namespace till {

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

} // namespace till
