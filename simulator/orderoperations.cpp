#include "simulator/presets.h"
#include "simulator/service.h"

namespace simulator {

using namespace Qt::Literals::StringLiterals;

namespace {

Answer orderAnswer(const QString &processingStatus)
{
    return success({{"order"_L1, QJsonObject{{"processingStatus"_L1, processingStatus}}}});
}

} // namespace

Answer Service::createAuthorizedOrder(const QJsonObject &body)
{
    const auto key = OrderStore::key(body);
    if (const auto *known = orderStore.order(key)) {
        const auto processingStatus = known->processingStatus;
        if (!keep({OrderStore::repetitionRecord(key, !known->isSameAs(body))}))
            return notKept();
        return orderAnswer(processingStatus);
    }
    const auto sent = body.value("customer"_L1).toObject().value("mobilePhone"_L1).toString();
    const auto phone = normalizedPhone(sent);
    // A sale without a card is an order too; a phone that nobody has is a mistake.
    const bool anonymous = sent.isEmpty();
    if (!anonymous && (!customers.customer(phone) || behaviour(phone) == Behaviour::OrderRefused))
        return orderAnswer(QStringLiteral("NotProcessed"));
    const auto processingStatus = behaviour(phone) == Behaviour::OrderCalculated
                                      ? QStringLiteral("Calculated")
                                      : QStringLiteral("Processed");
    if (!keep({OrderStore::orderRecord(body, processingStatus)}))
        return notKept();
    return orderAnswer(processingStatus);
}

Answer Service::changeStatus(const QJsonObject &body)
{
    const auto *order = orderStore.order(OrderStore::key(body));
    if (!order || !order->hasLinesOf(body)) {
        auto answer = refusal(order ? QStringLiteral("The order has other lines")
                                    : QStringLiteral("The order is unknown"),
                              QStringLiteral("order"));
        answer.body.insert("errorMessage"_L1, QStringLiteral("The status was not changed"));
        return answer;
    }
    const auto processingStatus = order->processingStatus;
    if (!keep({OrderStore::statusRecord(body)}))
        return notKept();
    return orderAnswer(processingStatus);
}

} // namespace simulator
