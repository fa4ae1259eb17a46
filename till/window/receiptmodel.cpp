#include "till/window/receiptmodel.h"

#include "till/window/texts.h"

#include <QtMath>

#include <algorithm>

namespace till {

namespace {

qint64 hundredthsOf(double sum)
{
    return qRound64(sum * 100);
}

Qt::Alignment alignmentOf(int column)
{
    return Qt::AlignVCenter | (column == ReceiptModel::Name ? Qt::AlignLeft : Qt::AlignRight);
}

QList<QStandardItem *> itemsOf(const PositionView &position)
{
    const auto saved =
        position.discounts.isEmpty() ? QString() : moneyLabel(position.sum - position.fullSum);
    QList<QStandardItem *> items;
    for (const auto &text :
         {QString::number(position.number), position.name, quantityLabel(position.quantity),
          moneyLabel(position.price), saved, moneyLabel(position.sum)}) {
        auto *const item = new QStandardItem(text);
        item->setTextAlignment(alignmentOf(static_cast<int>(items.size())));
        item->setEditable(false);
        items.append(item);
    }
    items.at(ReceiptModel::Name)->setToolTip(position.code + u'\n' + position.name);
    return items;
}

} // namespace

ReceiptModel::ReceiptModel()
    : QStandardItemModel(0, ColumnCount)
{
    setHorizontalHeaderLabels(
        {tr("No."), tr("Name"), tr("Quantity"), tr("Price"), tr("Discount"), tr("Sum")});
    for (int column = 0; column < ColumnCount; ++column)
        horizontalHeaderItem(column)->setTextAlignment(alignmentOf(column));
}

void ReceiptModel::reset(const QList<PositionView> &shown)
{
    if (positions == shown)
        return;
    setRowCount(0);
    positions.clear();
    hundredths = 0;
    for (const auto &position : shown)
        add(position);
}

void ReceiptModel::apply(const SaleEvent &event)
{
    if (event.kind == SaleEvent::Kind::PositionAdded) {
        add(event.position);
        return;
    }
    const auto row = rowOf(event.position.number);
    if (row < 0 || event.kind == SaleEvent::Kind::Refused)
        return;
    hundredths -= hundredthsOf(positions.at(row).sum);
    if (event.kind == SaleEvent::Kind::PositionRemoved) {
        positions.removeAt(row);
        removeRow(row);
        return;
    }
    hundredths += hundredthsOf(event.position.sum);
    positions[row] = event.position;
    const auto items = itemsOf(event.position);
    for (int column = 0; column < ColumnCount; ++column)
        setItem(row, column, items.at(column));
}

std::optional<PositionView> ReceiptModel::position(int row) const
{
    return row >= 0 && row < positions.size() ? std::optional(positions.at(row)) : std::nullopt;
}

int ReceiptModel::rowOf(int number) const
{
    const auto found = std::lower_bound(
        positions.begin(), positions.end(), number,
        [](const PositionView &position, int sought) { return position.number < sought; });
    return found != positions.end() && found->number == number
               ? static_cast<int>(found - positions.begin())
               : -1;
}

void ReceiptModel::add(const PositionView &position)
{
    positions.append(position);
    hundredths += hundredthsOf(position.sum);
    appendRow(itemsOf(position));
}

} // namespace till
