#include "support.h"
#include "tests/support/timezone.h"

#include <host/abstractdocument.h>
#include <host/documentjson.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <limits>

namespace {

const auto keptReceipt = QByteArrayLiteral(
    R"({"card":{"client":{"birthday":"1990-03-05","email":"","name":"Анна","options":[2],)"
    R"("phoneNumber":"79160000001","sex":1},"number":"79160000001"},)"
    R"("format":"till-receipt","header":{"cashCode":3,)"
    R"("dateTimeBeg":"2024-10-27T09:30:07.000+03:00","kind":1,"num":678,"shift":45,"shopCode":12},)"
    R"("pluginData":{"loyaltySystem24":{)"
    R"("customer":{"birthDate":null,"firstName":"Анна","isEmailConfirmed":false},)"
    R"("points":12.5,"visits":7}},"positions":[)"
    R"({"code":"001","impacts":[{"campaignCode":15,"discountMode":0,"discountSum":9.8,)"
    R"("impactSource":0,"posnum":1}],)"
    R"("name":"Хлеб \"\\\n","posnum":1,"price":49.9,"quantity":2,"sumb":90},)"
    R"({"code":"002","impacts":[],"name":"","posnum":4,"price":0.335,"quantity":3,"sumb":1.01}],)"
    R"("version":1})");

} // namespace

TEST(Receipt, RoundsSumsToHundredthsHalvesUpAndNothingElse)
{
    AbstractDocument document({});
    const std::tuple<double, double, double> cases[] = {
        {0.335, 3, 1.01},
        {0.1, 3, 0.3},
        {0.15, 1.9, 0.29},
        {0.36, 0.625, 0.23},
        {99'990.01, 1.499, 149'885.02},
    };
    for (const auto &[price, quantity, sum] : cases)
        EXPECT_EQ(document.addGoodsItem({}, {}, price, quantity)->getSumb(), sum);
    document.addImpactDetail({2, 1, 0, 0, 0.1});
    EXPECT_EQ(document.findGoodsItem(2)->getSumb(), 0.2);
    document.addImpactDetail({9, 1, 0, 0, 0.1});
    EXPECT_TRUE(document.getImpactDetails(9).isEmpty());
    EXPECT_EQ(document.getTotal(), 149'886.75);
}

TEST(Receipt, GivesTheNumberOfARemovedPositionToNoOther)
{
    AbstractDocument document({});
    for (const auto price : {1.0, 2.0, 4.0})
        document.addGoodsItem({}, {}, price, 1);
    document.addImpactDetail({3, 1, 0, 0, 0.5});
    const auto revision = document.getRevision();
    EXPECT_TRUE(document.removeGoodsItem(3));
    EXPECT_TRUE(document.removeGoodsItem(1));
    EXPECT_FALSE(document.removeGoodsItem(1));
    EXPECT_EQ(document.getRevision(), revision + 2);

    EXPECT_EQ(document.addGoodsItem({}, {}, 8, 1)->getPosnum(), 4);
    EXPECT_TRUE(document.getImpactDetails(3).isEmpty());
    EXPECT_EQ(document.getTotal(), 10);
    EXPECT_EQ(document.getGoodsItems().constFirst()->getPosnum(), 2);
}

TEST(Receipt, ChangesAQuantityUnlessThePositionWouldCostLessThanNothing)
{
    AbstractDocument document({});
    const auto item = document.addGoodsItem({}, {}, 0.335, 10);
    EXPECT_FALSE(document.changeQuantity(1, 0)); // refused without discounts too
    document.addImpactDetail({1, 1, 0, 0, 1});
    document.addImpactDetail({1, 2, 0, 0, 0.01});
    const auto revision = document.getRevision();
    for (const auto quantity : {2.9, 0.0, -1.0, qQNaN(), qInf(), 1e308})
        EXPECT_FALSE(document.changeQuantity(1, quantity)) << quantity;
    EXPECT_FALSE(document.changeQuantity(2, 1));
    EXPECT_EQ(item->getQuantity(), 10);
    EXPECT_EQ(item->getSumb(), 2.34);
    EXPECT_EQ(document.getRevision(), revision);

    EXPECT_TRUE(document.changeQuantity(1, 3)); // discounts of 1.01 are allowed
    EXPECT_EQ(item->getQuantity(), 3);
    EXPECT_EQ(item->getSumb(), 0);
    EXPECT_EQ(document.getImpactDetails(1).size(), 2);
    EXPECT_GT(document.getRevision(), revision);
}

// Reading compares what it has read with the text, member by member.
TEST(ReceiptAsJson, IsReadAsItWasKeptOrRefused)
{
    const auto replaced = [](const char *from, const char *to) {
        EXPECT_TRUE(keptReceipt.contains(from));
        const auto text = QByteArray(keptReceipt).replace(from, to);
        return documentjson::fromJson(QJsonDocument::fromJson(text).object());
    };
    EXPECT_TRUE(replaced("+03:00", "+00:00"));
    const auto read = replaced("{", "{");
    ASSERT_TRUE(read) << read.error().toStdString();
    EXPECT_TRUE((*read)->takeChangedPositions().isEmpty());
    EXPECT_EQ((*read)->getHeader().dateTimeBeg.time(), QTime(9, 30, 7));
    EXPECT_EQ((*read)->addGoodsItem({}, {}, 1, 1)->getPosnum(), 5);
    const auto data = (*read)->getPluginData(u"loyaltySystem24"_s);
    EXPECT_EQ(data.value(u"customer"_s).typeId(), QMetaType::QJsonObject);
    EXPECT_EQ(data.value(u"visits"_s), QVariant(7));

    const std::tuple<const char *, const char *, QLatin1String> cases[] = {
        {"till-receipt", "letter", R"(format: expected "till-receipt")"_L1},
        {R"("version":1)", R"("version":2)", "version: written by a newer version"_L1},
        {R"("version":1)", R"("version":0)", "expected values"_L1},
        {R"("shift":45)", R"("shift":45.5)", "expected values"_L1},
        {R"("shift":45)", R"("shift":3000000000)", "expected values"_L1},
        {R"("2024-10-27T09)", R"("2024-10-27T25)", "expected values"_L1},
        {"+03:00", "", "expected values"_L1},
        {R"("code":"002",)", "", "expected values"_L1},
        {R"("price":0.335)", R"("price":"0.335")", "expected values"_L1},
        {R"("posnum":4)", R"("posnum":1)", "expected values"_L1},
        {R"("posnum":1}])", R"("posnum":9}])", "expected values"_L1},
        {R"("sex":1)", R"("sex":2)", "expected values"_L1},
        {R"("options":[2])", R"("options":[2,2])", "expected values"_L1},
    };
    for (const auto &[from, to, expected] : cases) {
        const auto refused = replaced(from, to);
        ASSERT_FALSE(refused) << to;
        EXPECT_TRUE(refused.error().startsWith(expected)) << to << refused.error().toStdString();
    }
}

TEST(ReceiptAsJson, KeepsTheDataOfEveryPluginAsFarAsJsonCanHoldIt)
{
    const QVariantMap plain{
        {u"text"_s, u"имя"_s},
        {u"bool"_s, true},
        {u"int64"_s, std::numeric_limits<qint64>::max()},
        {u"sum"_s, 0.1 + 0.2},
        {u"object"_s, QJsonObject{{u"in"_s, QJsonArray{1, "x"_L1}}}},
    };
    AbstractDocument document({});
    document.setPluginData(u"plain"_s, plain);
    document.setPluginData(u"other"_s, {{u"strange"_s, qQNaN()}, {u"date"_s, QDate(2024, 2, 29)}});
    const auto read = documentjson::fromJson(documentjson::toJson(document));
    ASSERT_TRUE(read) << read.error().toStdString();
    EXPECT_EQ((*read)->getPluginData(u"plain"_s), plain);
    EXPECT_EQ(
        (*read)->getPluginData(u"other"_s),
        QVariantMap({{u"strange"_s, QVariant::fromValue(nullptr)}, {u"date"_s, u"2024-02-29"_s}}));
}

TEST(ReceiptAsJson, OfAnHourThatComesTwiceOrOfAnotherZoneKeepsItsTimeOfDay)
{
    const auto saveAndLoad = [](const char *savingZone, const char *loadingZone, qint64 second) {
        const TimeZone saving(savingZone);
        const auto json = documentjson::toJson(
            AbstractDocument({1, 0, 0, 0, 0, QDateTime::fromSecsSinceEpoch(second)}));
        const TimeZone loading(loadingZone);
        const auto read = documentjson::fromJson(json);
        const auto begun = read ? (*read)->getHeader().dateTimeBeg : QDateTime();
        return std::pair(begun.toSecsSinceEpoch(), begun.time());
    };
    constexpr qint64 firstHalfPastTwo = 1'729'989'000; // 00:30 UTC on 27 October 2024
    for (const auto second : {firstHalfPastTwo, firstHalfPastTwo + 3600}) {
        EXPECT_EQ(saveAndLoad("Europe/Berlin", "Europe/Berlin", second).first, second);
        EXPECT_EQ(saveAndLoad("Europe/Berlin", "Asia/Omsk", second).second, QTime(2, 30));
    }
}
