#pragma once

#include <QJsonObject>
#include <QString>

namespace lmmindbox {

/// An order read from JSON: from an answer with a member "order", or from the order itself.
class Order
{
public:
    /// Reads the transaction id from the top-level "ids", under the name in the setting
    /// "Mindbox:responseTransactionIdName".
    explicit Order(const QJsonObject &object);

    /// Whether the order has no lines.
    bool isEmpty() const;

    QString transactionId; ///< Empty when missing or no text.
    QJsonObject data;      ///< The order; empty when there is none.
};

} // namespace lmmindbox
