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
        return payload[QLatin1String("order")][QLatin1String("lines")].toArray();
    }
    void addTwoPositions()
    {
        document->addGoodsItem(QStringLiteral("4600"), QStringLiteral("Молоко"), 89.9, 2);
        document->addGoodsItem(QStringLiteral("4601"), QStringLiteral("Хлеб"), 0.335, 0.345);
        document->addImpactDetail(DocumentImpactDetail(1, 15, 0, 0, 9.8));
        document->addImpactDetail(DocumentImpactDetail(1, 16, 0, 1, 5));
        document->addImpactDetail(DocumentImpactDetail(1, 17, 6, 0, 0.25));
    }

    QSharedPointer<AbstractDocument> document;
    Converter converter;
    Customer customer;
};

TEST_F(Conversion, CreationPayloadIsComplete)
{
    addTwoPositions();
    customer.mobilePhone = QStringLiteral("79160000001");

    const auto [payload, id] = converter.getOrderPayload(customer, 99.995);

    const auto expected = QJsonDocument::fromJson(R"({
        "customer": {"mobilePhone": "79160000001"},
        "order": {
            "ids": {"externalOrderIdLm": "00120300450000678090507"},
            "totalPrice": 99.995,
            "lines": [
                {"basePricePerItem": 89.9, "discountedPricePerLine": 164.75, "quantity": 2,
                 "lineNumber": 1, "lineId": 1, "product": {"ids": {"websiteLumaret": "4600"}},
                 "requestedPromotions": [
                    {"type": "discount", "amount": 9.8,
                     "promotion": {"ids": {"externalId": 15}}},
                    {"type": "discount", "amount": 0.25,
                     "promotion": {"ids": {"externalId": "discountOnChange"}}}]},
                {"basePricePerItem": 0.335, "discountedPricePerLine": 0.12, "quantity": 0.345,
                 "lineNumber": 2, "lineId": 2, "product": {"ids": {"websiteLumaret": "4601"}}}
            ]}})");
    EXPECT_EQ(QJsonDocument(payload).toJson(), expected.toJson());
    EXPECT_EQ(id, QStringLiteral("00120300450000678090507"));
}

TEST_F(Conversion, StatusPayloadDiffersOnlyInItsLineFormAndLeavesNoTrace)
{
    addTwoPositions();
    const auto before = converter.getOrderPayload(customer, 1).first;

    const auto status = converter.getChangeOrderStatusPayload({});

    auto expected = before;
    auto order = expected[QLatin1String("order")].toObject();
    order.remove(QLatin1String("totalPrice"));
    QJsonArray lines;
    for (const auto &value : linesOf(before)) {
        auto line = value.toObject();
        line.insert(QLatin1String("discountedPriceOfLine"),
                    line.take(QLatin1String("discountedPricePerLine")));
        line.insert(QLatin1String("status"), QStringLiteral("Paid"));
        lines.append(line);
    }
    order.insert(QLatin1String("lines"), lines);
    EXPECT_EQ(QJsonDocument(status).toJson(),
              QJsonDocument(QJsonObject{{QStringLiteral("order"), order}}).toJson());
    EXPECT_EQ(converter.getOrderPayload(customer, 1).first, before);
    EXPECT_EQ(converter.getChangeOrderStatusPayload(QStringLiteral("any")), status);
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
            order.insert(QLatin1String("more"), 3);
            return order;
        }
        std::pair<QJsonObject, QString> getIds() const override
        {
            return {{{QStringLiteral("id"), 4}}, QStringLiteral("4")};
        }
    } replacing;
    document->addGoodsItem(QStringLiteral("4600"), QStringLiteral("Молоко"), 10, 1);
    const auto [creation, id] = replacing.getOrderPayload(customer, 1);
    EXPECT_EQ(id, QStringLiteral("4"));
    for (const auto &payload : {creation, replacing.getChangeOrderStatusPayload({})}) {
        const auto order = payload[QLatin1String("order")];
        EXPECT_EQ(order[QLatin1String("lines")][0][QLatin1String("requestedPromotions")][0], 1);
        EXPECT_EQ(order[QLatin1String("lines")][1], 2);
        EXPECT_EQ(order[QLatin1String("more")], 3);
        EXPECT_EQ(order[QLatin1String("ids")][QLatin1String("id")], 4);
    }
}

TEST_F(Conversion, LineNumbersRunWhateverThePositionNumbersAre)
{
    document->restoreGoodsItem(
        QSharedPointer<GoodsItem>::create(7, QStringLiteral("a"), QString(), 1.0, 1.0));
    document->restoreGoodsItem(
        QSharedPointer<GoodsItem>::create(3, QStringLiteral("b"), QString(), 1.0, 1.0));
    const auto lines = converter.getOrderLines();
    EXPECT_EQ(lines[0][QLatin1String("lineNumber")], 1);
    EXPECT_EQ(lines[0][QLatin1String("lineId")], 7);
    EXPECT_EQ(lines[1][QLatin1String("lineNumber")], 2);
    EXPECT_EQ(lines[1][QLatin1String("lineId")], 3);
}

TEST_F(Conversion, SettingsOfAPayloadApplyAtOnceButTheLinesStatusWithTheNextConverter)
{
    addTwoPositions();
    auto *config = Singleton<Config>::instance();
    config->set(QStringLiteral("LmMindbox:productIdName"), QStringLiteral("sku"));
    config->set(QStringLiteral("LmMindbox:productIdMask"),
                QStringLiteral("Товар %(position.posnum[03d])"));
    config->set(QStringLiteral("LmMindbox:requestTransactionIdName"), QStringLiteral("id"));
    config->set(QStringLiteral("LmMindbox:requestTransactionIdMask"),
                QStringLiteral("%(document.num[02d])+%(document.dateTimeBeg[yyyy-MM-dd])"));
    config->set(QStringLiteral("LmMindbox:changeOrderStatusLinesStatus"), QStringLiteral("Closed"));

    const auto status = converter.getChangeOrderStatusPayload({});

    const auto line = linesOf(status).at(1);
    EXPECT_EQ(line[QLatin1String("product")][QLatin1String("ids")][QLatin1String("sku")],
              QStringLiteral("Товар 002"));
    EXPECT_EQ(line[QLatin1String("status")], QStringLiteral("Paid"));
    EXPECT_EQ(status[QLatin1String("order")][QLatin1String("ids")].toObject(),
              QJsonObject({{QStringLiteral("id"), QStringLiteral("678+2024-02-01")}}));
    EXPECT_EQ(linesOf(Converter().getChangeOrderStatusPayload({}))[0][QLatin1String("status")],
              QStringLiteral("Closed"));
}

TEST_F(Conversion, AnEmptyReceiptStillMakesAPayload)
{
    EXPECT_EQ(
        QJsonDocument(converter.getChangeOrderStatusPayload({})).toJson(QJsonDocument::Compact),
        R"({"order":{"ids":{"externalOrderIdLm":"00120300450000678090507"},"lines":[]}})");
}

} // namespace
} // namespace lmmindbox
