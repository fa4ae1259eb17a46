#pragma once

#include "till/core/saleevent.h"

#include <QAbstractTableModel>

#include <optional>

namespace till {

/// The positions of the current receipt, updated by the sale's events.
class ReceiptModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    enum Column { Number, Name, Quantity, Price, Discount, Sum, ColumnCount };

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

    /// Replaces all positions.
    void reset(const QList<PositionView> &shown);
    /// Applies an event about a position.
    void apply(const SaleEvent &event);

    /// The position in the row; nothing for no row.
    std::optional<PositionView> position(int row) const;
    /// The row of the position with that number; -1 for none.
    int rowOf(int number) const;
    double total() const;

private:
    QList<PositionView> positions; ///< Ordered by number.
};

} // namespace till
