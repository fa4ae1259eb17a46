#include "till/window/receiptmodel.h"
#include "till/words/figures.h"

#include <algorithm>

namespace till {

namespace {

QString textOf(const PositionView &position, int column)
{
    switch (column) {
    case ReceiptModel::Number:
        return QString::number(position.number);
    case ReceiptModel::Name:
        return position.name;
    case ReceiptModel::Quantity:
        return quantityLabel(position.quantity);
    case ReceiptModel::Price:
        return moneyLabel(position.price);
    case ReceiptModel::Discount:
        return position.discounts.isEmpty() ? QString()
                                            : moneyLabel(position.sum - position.fullSum);
    default:
        return moneyLabel(position.sum);
    }
}

} // namespace

int ReceiptModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(positions.size());
}

int ReceiptModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant ReceiptModel::data(const QModelIndex &index, int role) const
{
    const auto &position = positions.at(index.row());
    if (role == Qt::DisplayRole)
        return textOf(position, index.column());
    return role == Qt::TextAlignmentRole ? headerData(index.column(), Qt::Horizontal, role)
                                         : QVariant();
}

QVariant ReceiptModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role == Qt::TextAlignmentRole)
        return QVariant(Qt::AlignVCenter | (section == Name ? Qt::AlignLeft : Qt::AlignRight));
    if (role != Qt::DisplayRole || orientation != Qt::Horizontal)
        return {};
    const QStringList titles{tr("No."),   tr("Name"),     tr("Quantity"),
                             tr("Price"), tr("Discount"), tr("Sum")};
    return titles.value(section);
}

void ReceiptModel::reset(const QList<PositionView> &shown)
{
    if (positions == shown)
        return;
    beginResetModel();
    positions = shown;
    endResetModel();
}

void ReceiptModel::apply(const SaleEvent &event)
{
    if (event.kind == SaleEvent::Kind::PositionAdded) {
        beginInsertRows({}, rowCount(), rowCount());
        positions.append(event.position);
        endInsertRows();
        return;
    }
    const auto row = rowOf(event.position.number);
    if (row < 0 || event.kind == SaleEvent::Kind::Refused)
        return;
    if (event.kind == SaleEvent::Kind::PositionRemoved) {
        beginRemoveRows({}, row, row);
        positions.removeAt(row);
        endRemoveRows();
        return;
    }
    positions[row] = event.position;
    emit dataChanged(index(row, 0), index(row, ColumnCount - 1));
}

std::optional<PositionView> ReceiptModel::position(int row) const
{
    return row >= 0 && row < positions.size() ? std::optional(positions.at(row)) : std::nullopt;
}

double ReceiptModel::total() const
{
    qint64 hundredths = 0; // a whole number, so that the total does not drift
    for (const auto &position : positions)
        hundredths += qRound64(position.sum * 100);
    return static_cast<double>(hundredths) / 100;
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

} // namespace till
