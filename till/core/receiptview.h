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
    int number = 0; ///< From 1; stays when other positions go.
    QString code;
    QString name;
    double price = 0;
    double quantity = 0;
    double fullSum = 0; ///< Before the discounts.
    double sum = 0;     ///< What the customer pays for it.
    QList<DocumentImpactDetail> discounts;

    bool operator==(const PositionView &other) const = default;
};

/// All that a face needs to draw a receipt: a value, safe to hand to another thread.
struct ReceiptView
{
    DocumentHeader header;
    QList<PositionView> positions;
    double total = 0;
    QString cardNumber; ///< Empty without a card.
    /// The card's holder, whose phone was confirmed. Nothing without a card or when unknown.
    std::optional<Client> customer;
};

ReceiptView viewOf(const AbstractDocument &document);
/// The position of that number; one with the number 0 when there is none.
PositionView positionOf(const AbstractDocument &document, int number);

} // namespace till

Q_DECLARE_METATYPE(till::ReceiptView)
