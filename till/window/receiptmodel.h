#pragma once

#include "till/core/saleevent.h"

#include <QAbstractTableModel>

#include <optional>

namespace till {

/// The positions of the receipt at hand, kept up to date by what happens at the till.
class ReceiptModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    enum Column { Number, Name, Quantity, Price, Discount, Sum, ColumnCount };

    using QAbstractTableModel::QAbstractTableModel;

    /// Shows a receipt's positions in the place of all others.
    void reset(const QList<PositionView> &positions);
    /// Shows what an event says of a position. Costs the same however many there are.
    void apply(const SaleEvent &event);

    /// The position in the row; nothing for no row.
    std::optional<PositionView> position(int row) const;
    /// The position of that number.
    std::optional<PositionView> find(int number) const;
    int rowOf(int number) const;
    double total() const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    QList<PositionView> positions; ///< By their numbers.
    qint64 hundredths = 0;         ///< Of the total, so that it does not drift.
};

} // namespace till
