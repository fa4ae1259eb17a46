#pragma once

#include <host/abstractdocument.h>

#include <QList>
#include <QMetaType>
#include <QString>

#include <optional>

namespace till {

/// A position of a receipt.
struct PositionView
{
    int number = 0; ///< From 1; stays the same when other positions are removed.
    QString code;
    QString name;
    double price = 0;
    double quantity = 0;
    double fullSum = 0; ///< Before the discounts.
    double sum = 0;     ///< After the discounts.
    QList<DocumentImpactDetail> discounts;

    bool operator==(const PositionView &other) const = default;
};

/// A receipt as a face draws it: a value, safe to pass to another thread.
struct ReceiptView
{
    DocumentHeader header;
    QList<PositionView> positions;
    double total = 0;
    QString cardNumber; ///< Empty without a card.
    /// The card's holder, with a confirmed phone; nothing without a card or an identified holder.
    std::optional<Client> customer;
};

ReceiptView viewOf(const AbstractDocument &document);
/// The position with that number; a position numbered 0 when there is none.
PositionView positionOf(const AbstractDocument &document, int number);

} // namespace till

Q_DECLARE_METATYPE(till::ReceiptView)
