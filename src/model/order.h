#pragma once

#include <QJsonObject>
#include <QString>

namespace lmmindbox {

/// An order read from JSON: an answer that carries it under "order", or the order itself.
class Order
{
public:
    /// The transaction id is read from the "ids" beside the order's wrapper, under the name in
    /// the setting "Mindbox:responseTransactionIdName".
    explicit Order(const QJsonObject &object);

    /// Whether the order has no lines.
    bool isEmpty() const;

    QString transactionId; ///< Empty when missing or no text.
    QJsonObject data;      ///< The order; empty when there is none.
};

} // namespace lmmindbox
