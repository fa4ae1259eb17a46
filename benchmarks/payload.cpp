#include "benchmarks/comparison.h"
#include "benchmarks/setup.h"

#include "converter/converter.h"
#include "interface/interface.h"
#include "tests/support/fakehttp.h"

#include <host/abstractdocument.h>
#include <host/session.h>

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <utility>
#include <vector>

namespace bench {

namespace {

/// The floor of the payloads: a receipt as plain values, and the order operations' JSON built of
/// them by hand.
class HandmadeOrder
{
public:
    HandmadeOrder(const AbstractDocument &receipt, QString orderId);

    QJsonObject payload(bool statusChange) const;

private:
    struct Promotion
    {
        double amount;
        QJsonValue externalId;
    };
    struct Line
    {
        double price;
        double sum;
        double quantity;
        int number;
        int id;
        QString product;
        std::vector<Promotion> promotions;
    };
    static QJsonArray toJson(const std::vector<Promotion> &promotions);

    std::vector<Line> lines;
    double total;
    QString orderId;
};

HandmadeOrder::HandmadeOrder(const AbstractDocument &receipt, QString orderId)
    : total(receipt.getTotal())
    , orderId(std::move(orderId))
{
    constexpr int discountOnChange = 6;
    for (const auto &item : receipt.getGoodsItems()) {
        auto &line = lines.emplace_back(Line{item->getPrice(),
                                             item->getSumb(),
                                             item->getQuantity(),
                                             static_cast<int>(lines.size()) + 1,
                                             item->getPosnum(),
                                             item->getCode(),
                                             {}});
        for (const auto &detail : receipt.getImpactDetails(line.id))
            line.promotions.push_back(
                {detail->getDiscountSum(), detail->getDiscountMode() == discountOnChange
                                               ? QJsonValue(QStringLiteral("discountOnChange"))
                                               : QJsonValue(detail->getCampaignCode())});
    }
}

QJsonObject HandmadeOrder::payload(bool statusChange) const
{
    const auto sumName = statusChange ? QStringLiteral("discountedPriceOfLine")
                                      : QStringLiteral("discountedPricePerLine");
    QJsonArray array;
    for (const auto &line : lines) {
        QJsonObject json = {
            {QStringLiteral("basePricePerItem"), line.price},
            {sumName, line.sum},
            {QStringLiteral("quantity"), line.quantity},
            {QStringLiteral("lineNumber"), line.number},
            {QStringLiteral("lineId"), line.id},
            {QStringLiteral("product"),
             QJsonObject{{QStringLiteral("ids"),
                          QJsonObject{{QStringLiteral("websiteLumaret"), line.product}}}}},
        };
        if (statusChange)
            json.insert(QLatin1String("status"), QStringLiteral("Paid"));
        if (!line.promotions.empty())
            json.insert(QLatin1String("requestedPromotions"), toJson(line.promotions));
        array.append(json);
    }
    QJsonObject order = {
        {QStringLiteral("lines"), array},
        {QStringLiteral("ids"), QJsonObject{{QStringLiteral("externalOrderIdLm"), orderId}}},
    };
    if (statusChange)
        return {{QStringLiteral("order"), order}};
    order.insert(QLatin1String("totalPrice"), total);
    return {
        {QStringLiteral("customer"), QJsonObject{{QStringLiteral("mobilePhone"), confirmedPhone}}},
        {QStringLiteral("order"), order},
    };
}

QJsonArray HandmadeOrder::toJson(const std::vector<Promotion> &promotions)
{
    QJsonArray array;
    for (const auto &promotion : promotions)
        array.append(QJsonObject{
            {QStringLiteral("type"), QStringLiteral("discount")},
            {QStringLiteral("amount"), promotion.amount},
            {QStringLiteral("promotion"),
             QJsonObject{{QStringLiteral("ids"),
                          QJsonObject{{QStringLiteral("externalId"), promotion.externalId}}}}},
        });
    return array;
}

/// Takes a request as far as the bytes.
class SerialisingClient : public FakeRestClient
{
public:
    SerialisingClient() { answer = R"({"status":"Success"})"; }
    void send(const QUrl & /*url*/, const QJsonDocument &document,
              const QHash<QString, QString> & /*headers*/) override
    {
        sent = document.toJson(QJsonDocument::Compact);
    }

    QByteArray sent;
};

QByteArray envelope(QJsonObject payload)
{
    payload.insert(QLatin1String("pointOfContact"), QStringLiteral("Offline"));
    return QJsonDocument(payload).toJson(QJsonDocument::Compact);
}

/// The body of the request that the service client makes of the payload.
QByteArray sentByClient(const QJsonObject &payload, bool statusChange)
{
    const SerialisingClient client;
    lmmindbox::Interface interface;
    if (statusChange)
        interface.changeOrderStatus(payload, true);
    else
        interface.createAuthorizedOrder(payload, true);
    return client.sent;
}

void payload(benchmark::State &state, bool statusChange)
{
    const auto lines = static_cast<int>(state.range(0));
    const auto receipt = makeReceipt(lines, 1);
    Singleton<Session>::instance()->setCurrentDocument(receipt);
    lmmindbox::Converter converter;
    lmmindbox::Customer customer;
    customer.mobilePhone = confirmedPhone;
    const HandmadeOrder handmade(*receipt, converter.getIds().second);

    const auto converted = [&] {
        return statusChange ? converter.getChangeOrderStatusPayload({})
                            : converter.getOrderPayload(customer, receipt->getTotal()).first;
    };
    const auto ours = [&] { return envelope(converted()); };
    const auto floor = [&] { return envelope(handmade.payload(statusChange)); };
    if (ours() != floor() || ours() != sentByClient(converted(), statusChange))
        fail(state, "the payloads differ");
    else
        compare(
            state, std::max(1, 30 / lines), [&] { return !ours().isEmpty(); },
            [&] { return !floor().isEmpty(); });
    Singleton<Session>::instance()->setCurrentDocument(nullptr);
}

} // namespace

void registerPayloads(Setup &setup)
{
    constexpr auto longest = 10'000;
    for (const auto statusChange : {false, true}) {
        const auto *const name = statusChange ? "statusPayload" : "orderPayload";
        const auto run = [=](auto &state) { payload(state, statusChange); };
        benchmark::RegisterBenchmark(name, run)
            ->RangeMultiplier(10)
            ->Range(1, longest / 10)
            ->UseManualTime();
        // By time alone it would be a handful.
        benchmark::RegisterBenchmark(name, run)
            ->Arg(longest)
            ->Iterations(setup.isQuick() ? 1 : 50)
            ->UseManualTime();
    }
}

} // namespace bench
