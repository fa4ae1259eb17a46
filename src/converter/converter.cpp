#include "converter/converter.h"

#include "model/customer.h"

#include <host/abstractdocument.h>
#include <host/config.h>
#include <host/discountlogic.h>
#include <host/session.h>

namespace lmmindbox {

Converter::Converter()
    : linesStatus(Singleton<Config>::instance()->getText(
          QStringLiteral("LmMindbox:changeOrderStatusLinesStatus"), QStringLiteral("Paid")))
{}

std::pair<QJsonObject, QString> Converter::getOrderPayload(const Customer &customer,
                                                           double totalPrice) const
{
    auto order = getOrder();
    order.insert(QLatin1String("totalPrice"), totalPrice);
    const auto [ids, transactionId] = getIds();
    order.insert(QLatin1String("ids"), ids);
    return {{
                {QStringLiteral("customer"),
                 QJsonObject{{QStringLiteral("mobilePhone"), customer.mobilePhone}}},
                {QStringLiteral("order"), order},
            },
            transactionId};
}

QJsonObject Converter::getChangeOrderStatusPayload(const QString & /*transactionId*/)
{
    changeStatusMode = true;
    auto order = getOrder();
    changeStatusMode = false;
    order.insert(QLatin1String("ids"), getIds().first);
    return {{QStringLiteral("order"), order}};
}

QJsonObject Converter::getOrder() const
{
    return {{QStringLiteral("lines"), getOrderLines()}};
}

QJsonArray Converter::getOrderLines() const
{
    const auto document = Singleton<Session>::instance()->getCurrentDocument();
    const auto sumName = changeStatusMode ? QStringLiteral("discountedPriceOfLine")
                                          : QStringLiteral("discountedPricePerLine");
    const auto items = document ? document->getGoodsItems() : QList<QSharedPointer<GoodsItem>>();
    QJsonArray lines;
    int lineNumber = 1;
    for (const auto &item : items) {
        QJsonObject line = {
            {QStringLiteral("basePricePerItem"), item->getPrice()},
            {sumName, item->getSumb()},
            {QStringLiteral("quantity"), item->getQuantity()},
            {QStringLiteral("lineNumber"), lineNumber++},
            {QStringLiteral("lineId"), item->getPosnum()},
            {QStringLiteral("product"), getProductIds(item)},
        };
        if (changeStatusMode)
            line.insert(QLatin1String("status"), linesStatus);
        if (const auto promotions = getRequestedPromotions(document, item); !promotions.isEmpty())
            line.insert(QLatin1String("requestedPromotions"), promotions);
        lines.append(line);
    }
    return lines;
}

QJsonArray Converter::getRequestedPromotions(const QSharedPointer<AbstractDocument> &document,
                                             const QSharedPointer<GoodsItem> &item) const
{
    constexpr int tillCampaign = 0;
    constexpr int discountOnChange = 6;

    QJsonArray promotions;
    const auto details = MockFactory<DiscountLogic>::create()->getImpactDetailsForPosition(
        item->getPosnum(), document);
    for (const auto &detail : details) {
        if (detail->getImpactSource() != tillCampaign)
            continue;
        const auto externalId = detail->getDiscountMode() == discountOnChange
                                    ? QJsonValue(QStringLiteral("discountOnChange"))
                                    : QJsonValue(detail->getCampaignCode());
        promotions.append(QJsonObject{
            {QStringLiteral("type"), QStringLiteral("discount")},
            {QStringLiteral("amount"), detail->getDiscountSum()},
            {QStringLiteral("promotion"),
             QJsonObject{
                 {QStringLiteral("ids"), QJsonObject{{QStringLiteral("externalId"), externalId}}},
             }},
        });
    }
    return promotions;
}

} // namespace lmmindbox
