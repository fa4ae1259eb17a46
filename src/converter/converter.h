#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QSharedPointer>
#include <QString>

#include <utility>

class AbstractDocument;
class GoodsItem;

namespace lmmindbox {

class Customer;

/// Turns the session's current receipt into the payloads of the order operations.
///
/// The host's values go into the payload unchecked and unrounded. Only the total and the customer
/// come from the caller. One converter builds one payload at a time.
class Converter
{
public:
    /// Reads the setting "LmMindbox:changeOrderStatusLinesStatus", the lines' status, once.
    Converter();
    virtual ~Converter() = default;
    Q_DISABLE_COPY_MOVE(Converter)

    /// The payload of the order's creation, and its transaction id.
    virtual std::pair<QJsonObject, QString> getOrderPayload(const Customer &customer,
                                                            double totalPrice) const;
    /// The payload that gives every line the configured status. The ids are computed afresh;
    /// `transactionId` is not read.
    virtual QJsonObject getChangeOrderStatusPayload(const QString &transactionId);
    /// One object for each position, in the receipt's order; empty without a current receipt.
    virtual QJsonArray getOrderLines() const;
    /// The till's own discounts on a position; empty when there are none.
    virtual QJsonArray getRequestedPromotions(const QSharedPointer<AbstractDocument> &document,
                                              const QSharedPointer<GoodsItem> &item) const;
    /// The lines under "lines": the beginning of each payload.
    virtual QJsonObject getOrder() const;
    /// The order's ids and their only member, the transaction id; from the settings
    /// "LmMindbox:requestTransactionIdName" and "LmMindbox:requestTransactionIdMask".
    virtual std::pair<QJsonObject, QString> getIds() const;
    /// A position's product ids, from the settings "LmMindbox:productIdName" and
    /// "LmMindbox:productIdMask".
    QJsonObject getProductIds(const QSharedPointer<GoodsItem> &item) const;

private:
    bool changeStatusMode = false; ///< On while the status payload is built: other lines.
    QString linesStatus;
};

} // namespace lmmindbox
