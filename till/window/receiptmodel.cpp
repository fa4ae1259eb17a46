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

} // namespace

void ReceiptModel::reset(const QList<PositionView> &shown)
{
    if (positions == shown)
        return;
    beginResetModel();
    positions = shown;
    hundredths = 0;
    for (const auto &position : shown)
        hundredths += hundredthsOf(position.sum);
    endResetModel();
}

void ReceiptModel::apply(const SaleEvent &event)
{
    const auto row = rowOf(event.position.number);
    const auto before = position(row).value_or(PositionView()).sum;
    switch (event.kind) {
    case SaleEvent::Kind::PositionAdded:
        beginInsertRows({}, rowCount(), rowCount());
        positions.append(event.position);
        endInsertRows();
        hundredths += hundredthsOf(event.position.sum);
        break;
    case SaleEvent::Kind::PositionChanged:
    case SaleEvent::Kind::Discounted:
        if (row < 0)
            return;
        positions[row] = event.position;
        emit dataChanged(index(row, 0), index(row, ColumnCount - 1));
        hundredths += hundredthsOf(event.position.sum) - hundredthsOf(before);
        break;
    case SaleEvent::Kind::PositionRemoved:
        if (row < 0)
            return;
        beginRemoveRows({}, row, row);
        positions.removeAt(row);
        endRemoveRows();
        hundredths -= hundredthsOf(before);
        break;
    default:
        break;
    }
}

std::optional<PositionView> ReceiptModel::position(int row) const
{
    return row >= 0 && row < positions.size() ? std::optional(positions.at(row)) : std::nullopt;
}

std::optional<PositionView> ReceiptModel::find(int number) const
{
    return position(rowOf(number));
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

double ReceiptModel::total() const
{
    return static_cast<double>(hundredths) / 100;
}

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
    if (role == Qt::TextAlignmentRole)
        return QVariant(Qt::AlignVCenter |
                        (index.column() == Name ? Qt::AlignLeft : Qt::AlignRight));
    const auto shown = position(index.row());
    if (!shown || (role != Qt::DisplayRole && role != Qt::ToolTipRole))
        return {};
    switch (index.column()) {
    case Number:
        return shown->number;
    case Name:
        return role == Qt::ToolTipRole ? shown->code + u'\n' + shown->name : shown->name;
    case Quantity:
        return quantityLabel(shown->quantity);
    case Price:
        return moneyLabel(shown->price);
    case Discount:
        return shown->discounts.isEmpty() ? QString() : moneyLabel(shown->sum - shown->fullSum);
    default:
        return moneyLabel(shown->sum);
    }
}

QVariant ReceiptModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role == Qt::TextAlignmentRole)
        return data(index(0, section), role);
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case Number:
        return tr("No.");
    case Name:
        return tr("Name");
    case Quantity:
        return tr("Quantity");
    case Price:
        return tr("Price");
    case Discount:
        return tr("Discount");
    default:
        return tr("Sum");
    }
}

} // namespace till
