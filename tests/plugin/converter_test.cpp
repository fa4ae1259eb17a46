#include "fakes.h"

#include "converter/converter.h"

#include <QJsonArray>

namespace lmmindbox {
namespace {

class Conversion : public testing::Test
{
protected:
    Conversion()
    {
        DocumentHeader header;
        header.shopCode = 12;
        header.cashCode = 3;
        header.shift = 45;
        header.num = 678;
        header.dateTimeBeg = QDateTime(QDate(2024, 2, 1), QTime(9, 5, 7));
        document = QSharedPointer<AbstractDocument>::create(header);
        Singleton<Session>::instance()->setCurrentDocument(document);
    }
    ~Conversion() override
    {
        Singleton<Session>::instance()->setCurrentDocument(nullptr);
        Singleton<Config>::instance()->clear();
    }
    QJsonArray linesOf(const QJsonObject &payload) const
    {
        return payload["order"_L1]["lines"_L1].toArray();
    }
    /// In another order than their numbers.
    void addTwoPositions()
    {
        document->restoreGoodsItem(
            QSharedPointer<GoodsItem>::create(7, u"4600"_s, u"Молоко"_s, 89.9, 2.0));
        document->restoreGoodsItem(
            QSharedPointer<GoodsItem>::create(3, u"4601"_s, u"Хлеб"_s, 0.335, 0.345));
        document->addImpactDetail(DocumentImpactDetail(7, 15, 0, 0, 9.8));
        document->addImpactDetail(DocumentImpactDetail(7, 16, 0, 1, 5));
        document->addImpactDetail(DocumentImpactDetail(7, 17, 6, 0, 0.25));
    }

    QSharedPointer<AbstractDocument> document;
    Converter converter;
    Customer customer;
};

TEST_F(Conversion, CreationPayloadIsComplete)
{
    addTwoPositions();
    customer.mobilePhone = u"79160000001"_s;

    const auto [payload, id] = converter.getOrderPayload(customer, 99.995);

    const auto expected = QJsonDocument::fromJson(R"({
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
                 "lineNumber": 2, "lineId": 3, "product": {"ids": {"websiteLumaret": "4601"}}}
            ]}})");
    EXPECT_EQ(QJsonDocument(payload).toJson(), expected.toJson());
    EXPECT_EQ(id, u"00120300450000678090507"_s);
}

TEST_F(Conversion, StatusPayloadDiffersOnlyInItsLineFormAndLeavesNoTrace)
{
    addTwoPositions();
    const auto before = converter.getOrderPayload(customer, 1).first;

    const auto status = converter.getChangeOrderStatusPayload({});

    auto expected = before;
    auto order = expected["order"_L1].toObject();
    order.remove("totalPrice"_L1);
    QJsonArray lines;
    for (const auto &value : linesOf(before)) {
        auto line = value.toObject();
        line.insert("discountedPriceOfLine"_L1, line.take("discountedPricePerLine"_L1));
        line.insert("status"_L1, u"Paid"_s);
        lines.append(line);
    }
    order.insert("lines"_L1, lines);
    EXPECT_EQ(QJsonDocument(status).toJson(),
              QJsonDocument(QJsonObject{{u"order"_s, order}}).toJson());
    EXPECT_EQ(converter.getOrderPayload(customer, 1).first, before);
    EXPECT_EQ(converter.getChangeOrderStatusPayload(u"any"_s), status);
}

TEST_F(Conversion, EachPieceOfAPayloadCanBeReplaced)
{
    class Replacing : public Converter
    {
    public:
        QJsonArray getOrderLines() const override
        {
            auto lines = Converter::getOrderLines();
            lines.append(2);
            return lines;
        }
        QJsonArray getRequestedPromotions(const QSharedPointer<AbstractDocument> &,
                                          const QSharedPointer<GoodsItem> &) const override
        {
            return {1};
        }
        QJsonObject getOrder() const override
        {
            auto order = Converter::getOrder();
            order.insert("more"_L1, 3);
            return order;
        }
        std::pair<QJsonObject, QString> getIds() const override { return {{{u"id"_s, 4}}, u"4"_s}; }
    } replacing;
    document->addGoodsItem(u"4600"_s, u"Молоко"_s, 10, 1);
    const auto [creation, id] = replacing.getOrderPayload(customer, 1);
    EXPECT_EQ(id, u"4"_s);
    for (const auto &payload : {creation, replacing.getChangeOrderStatusPayload({})}) {
        const auto order = payload["order"_L1];
        EXPECT_EQ(order["lines"_L1][0]["requestedPromotions"_L1][0], 1);
        EXPECT_EQ(order["lines"_L1][1], 2);
        EXPECT_EQ(order["more"_L1], 3);
        EXPECT_EQ(order["ids"_L1]["id"_L1], 4);
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

    const auto status = converter.getChangeOrderStatusPayload({});

    const auto line = linesOf(status).at(1);
    EXPECT_EQ(line["product"_L1]["ids"_L1]["sku"_L1], u"Товар 003"_s);
    EXPECT_EQ(line["status"_L1], u"Paid"_s);
    EXPECT_EQ(status["order"_L1]["ids"_L1].toObject(),
              QJsonObject({{u"id"_s, u"678+2024-02-01"_s}}));
    EXPECT_EQ(linesOf(Converter().getChangeOrderStatusPayload({}))[0]["status"_L1], u"Closed"_s);
}

TEST_F(Conversion, AnEmptyReceiptStillMakesAPayload)
{
    EXPECT_EQ(
        QJsonDocument(converter.getChangeOrderStatusPayload({})).toJson(QJsonDocument::Compact),
        R"({"order":{"ids":{"externalOrderIdLm":"00120300450000678090507"},"lines":[]}})");
}

} // namespace
} // namespace lmmindbox
