#include "fakes.h"

namespace lmmindbox {
namespace {

class Conversion : public testing::Test
{
protected:
    Conversion()
    {
        const DocumentHeader header{1, 12, 3, 45, 678, QDateTime({2024, 2, 1}, {9, 5, 7})};
        document = QSharedPointer<AbstractDocument>::create(header);
        Singleton<Session>::instance()->setCurrentDocument(document);
    }
    ~Conversion() override
    {
        Singleton<Session>::instance()->setCurrentDocument(nullptr);
        Singleton<Config>::instance()->clear();
    }
    /// The positions are not in the order of their numbers.
    void addTwoPositions()
    {
        document->restoreGoodsItem(
            QSharedPointer<GoodsItem>::create(7, u"4600"_s, u"Молоко"_s, 89.9, 2.0));
        document->restoreGoodsItem(
            QSharedPointer<GoodsItem>::create(3, u"4601"_s, u"Хлеб"_s, 0.335, 0.345));
        for (const auto &impact :
             {DocumentImpactDetail(7, 15, 0, 0, 9.8), DocumentImpactDetail(7, 16, 0, 1, 5),
              DocumentImpactDetail(7, 17, 6, 0, 0.25), DocumentImpactDetail(3, 18, 0, 0, 0)})
            document->addImpactDetail(impact);
    }

    QSharedPointer<AbstractDocument> document;
    Converter converter;
    Customer customer;
};

TEST_F(Conversion, PayloadsAreCompleteAndTheStatusPayloadLeavesNoTrace)
{
    addTwoPositions();
    customer.mobilePhone = u"79160000001"_s;
    const QByteArray expected = R"({
        "customer": {"mobilePhone": "79160000001"},
        "order": {
            "ids": {"externalOrderIdLm": "00120300450000678090507"},
            "totalPrice": 99.995,
            "lines": [
                {"basePricePerItem": 89.9, "discountedPricePerLine": 164.75, "quantity": 2,
                 "lineNumber": 1, "lineId": 7, "product": {"ids": {"websiteLumaret": "4600"}},
                 "requestedPromotions": [
                    {"type": "discount", "amount": 9.8,
                     "promotion": {"ids": {"externalId": 15}}},
                    {"type": "discount", "amount": 0.25,
                     "promotion": {"ids": {"externalId": "discountOnChange"}}}]},
                {"basePricePerItem": 0.335, "discountedPricePerLine": 0.12, "quantity": 0.345,
                 "lineNumber": 2, "lineId": 3, "product": {"ids": {"websiteLumaret": "4601"}},
                 "requestedPromotions": [
                    {"type": "discount", "amount": 0,
                     "promotion": {"ids": {"externalId": 18}}}]}
            ]}})";
    auto status = json(QByteArray(expected)
                           .replace("PricePerLine", "PriceOfLine")
                           .replace(R"("lineNumber")", R"("status": "Paid", "lineNumber")")
                           .replace(R"("totalPrice": 99.995,)", ""));
    status.remove("customer"_L1);
    for (auto i = 0; i < 2; ++i) {
        const auto [payload, id] = converter.getOrderPayload(customer, 99.995);
        EXPECT_EQ(QJsonDocument(payload).toJson(), QJsonDocument(json(expected)).toJson());
        EXPECT_EQ(id, u"00120300450000678090507"_s);
        EXPECT_EQ(QJsonDocument(converter.getChangeOrderStatusPayload(u"any"_s)).toJson(),
                  QJsonDocument(status).toJson());
    }
}

TEST_F(Conversion, SettingsOfAPayloadApplyAtOnceButTheLinesStatusWithTheNextConverter)
{
    addTwoPositions();
    auto *config = Singleton<Config>::instance();
    config->set(u"LmMindbox:productIdName"_s, u"sku"_s);
    config->set(u"LmMindbox:productIdMask"_s, u"Товар %(position.posnum[03d])"_s);
    config->set(u"LmMindbox:requestTransactionIdName"_s, u"id"_s);
    config->set(u"LmMindbox:requestTransactionIdMask"_s,
                u"%(document.num[02d])+%(document.dateTimeBeg[yyyy-MM-dd])"_s);
    config->set(u"LmMindbox:changeOrderStatusLinesStatus"_s, u"Closed"_s);
    for (const auto &[order, status] :
         {std::pair(converter.getChangeOrderStatusPayload({})["order"_L1].toObject(), u"Paid"_s),
          std::pair(Converter().getChangeOrderStatusPayload({})["order"_L1].toObject(),
                    u"Closed"_s)}) {
        const auto line = order["lines"_L1][1];
        EXPECT_EQ(line["product"_L1]["ids"_L1]["sku"_L1], u"Товар 003"_s);
        EXPECT_EQ(line["status"_L1], status);
        EXPECT_EQ(order["ids"_L1]["id"_L1], u"678+2024-02-01"_s);
    }
}

TEST_F(Conversion, AnEmptyReceiptAndNoReceiptStillMakeAPayload)
{
    EXPECT_EQ(
        converter.getChangeOrderStatusPayload({}),
        json(R"({"order":{"ids":{"externalOrderIdLm":"00120300450000678090507"},"lines":[]}})"));
    Singleton<Session>::instance()->setCurrentDocument(nullptr);
    EXPECT_EQ(converter.getOrder(), json(R"({"lines":[]})"));
}

} // namespace
} // namespace lmmindbox
