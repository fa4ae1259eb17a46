#pragma once

#include "till/core/saleevent.h"

#include <QStandardItemModel>

#include <optional>

namespace till {

/// The positions of the receipt at hand, kept up to date by what happens at the till.
class ReceiptModel : public QStandardItemModel
{
    Q_OBJECT
public:
    enum Column { Number, Name, Quantity, Price, Discount, Sum, ColumnCount };

    ReceiptModel();

    /// Shows a receipt's positions in the place of all others.
    void reset(const QList<PositionView> &shown);
    /// Shows what an event says of a position. Costs the same however many there are.
    void apply(const SaleEvent &event);

    /// The position in the row; nothing for no row.
    std::optional<PositionView> position(int row) const;
    /// The row of the position of that number; -1 for none.
    int rowOf(int number) const;
    double total() const { return static_cast<double>(hundredths) / 100; }

private:
    void add(const PositionView &position);

    QList<PositionView> positions; ///< By their numbers.
    qint64 hundredths = 0;         ///< Of the total, so that it does not drift.
};

} // namespace till
