#include "support.h"
#include "tests/support/timezone.h"

#include <host/abstractdocument.h>
#include <host/documentjson.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <limits>
#include <vector>

namespace {

/// As the first version kept it.
const auto keptReceipt = QByteArrayLiteral(
    R"({"card":{"client":{"birthday":"1990-03-05","email":"","name":"Анна","options":[2],)"
    R"("phoneNumber":"79160000001","sex":1},"number":{"type":"text","value":"79160000001"}},)"
    R"("format":"till-receipt","header":{"cashCode":3,)"
    R"("dateTimeBeg":"2024-10-27T09:30:07.000+03:00","kind":1,"num":678,"shift":45,"shopCode":12},)"
    R"("impacts":[{"campaignCode":15,"discountMode":0,"discountSum":9.8,"impactSource":0,)"
    R"("posnum":1}],"items":[)"
    R"({"code":"001","name":"Хлеб \"\\\n","posnum":1,"price":49.9,"quantity":2,"sumb":90},)"
    R"({"code":"002","name":"","posnum":4,"price":0.335,"quantity":3,"sumb":1.01}],)"
    R"("pluginData":{"loyaltySystem24":{"type":"map","value":{)"
    R"("customer":{"type":"object","value":{"birthDate":null,"email":"","firstName":"Анна",)"
    R"("isEmailConfirmed":false,"mobilePhone":"79160000001"}},)"
    R"("noDate":{"type":"date","value":null},"points":{"type":"double","value":12},)"
    R"("since":{"type":"date","value":"2020-02-29"},)"
    R"("visits":{"type":"int32","value":7}}}},"version":1})");

QByteArray jsonOf(const AbstractDocument &document)
{
    QString error;
    const auto json = documentjson::toJson(document, error);
    EXPECT_EQ(error, QString());
    return QJsonDocument(json).toJson(QJsonDocument::Compact);
}

QSharedPointer<AbstractDocument> readBack(const QByteArray &json, QString &error)
{
    return documentjson::fromJson(QJsonDocument::fromJson(json).object(), error);
}

} // namespace

TEST(Receipt, RoundsSumsToHundredths)
{
    AbstractDocument document({});
    EXPECT_EQ(document.addGoodsItem({}, {}, 0.335, 3)->getSumb(), 1.01); // 1.005 in decimal digits
    EXPECT_EQ(document.addGoodsItem({}, {}, 0.1, 3)->getSumb(), 0.3);
    document.addImpactDetail({2, 1, 0, 0, 0.1});
    EXPECT_EQ(document.findGoodsItem(2)->getSumb(), 0.2);
    document.addImpactDetail({9, 1, 0, 0, 0.1});
    EXPECT_TRUE(document.getImpactDetails(9).isEmpty());
    EXPECT_EQ(document.getTotal(), 1.21);
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
    EXPECT_GT(document.getRevision(), revision + 1);
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
    document.addImpactDetail({1, 1, 0, 0, 1});
    document.addImpactDetail({1, 2, 0, 0, 0.01});
    const auto revision = document.getRevision();
    for (const auto quantity : {2.9, 0.0, -1.0, qQNaN(), qInf(), 1e308})
        EXPECT_FALSE(document.changeQuantity(1, quantity)) << quantity;
    EXPECT_FALSE(document.changeQuantity(2, 1));
    EXPECT_EQ(item->getQuantity(), 10);
    EXPECT_EQ(item->getSumb(), 2.34);
    EXPECT_EQ(document.getRevision(), revision);

    EXPECT_TRUE(document.changeQuantity(1, 3)); // 1.01 without the discounts
    EXPECT_EQ(item->getQuantity(), 3);
    EXPECT_EQ(item->getSumb(), 0);
    EXPECT_EQ(document.getImpactDetails(1).size(), 2);
    EXPECT_GT(document.getRevision(), revision);
}

TEST(ReceiptAsJson, IsReadAsItWasKept)
{
    QString error;
    const auto read = readBack(keptReceipt, error);
    ASSERT_TRUE(read) << error.toStdString();
    EXPECT_TRUE(readBack(QByteArray(keptReceipt).replace("+03:00", "+00:00"), error));
    EXPECT_EQ(read->getRevision(), 0);
    EXPECT_EQ(read->getHeader().dateTimeBeg.time(), QTime(9, 30, 7));
    EXPECT_EQ(read->getTotal(), 91.01);
    EXPECT_EQ(read->addGoodsItem({}, {}, 1, 1)->getPosnum(), 5);
    const auto data = read->getPluginData(QStringLiteral("loyaltySystem24"));
    EXPECT_EQ(data.value(QStringLiteral("customer")).typeId(), QMetaType::QJsonObject);
    EXPECT_EQ(data.value(QStringLiteral("noDate")).typeId(), QMetaType::QDate);
    EXPECT_EQ(data.value(QStringLiteral("visits")), QVariant(7));
    const auto client = read->getCardRecord()->getCard()->getClient();
    EXPECT_TRUE(client->hasOption(ClientOptions::ElectronicReceipt));
    EXPECT_EQ(client->getSex(), Client::Sex::Female);
}

TEST(ReceiptAsJson, KeepsEveryPlainValueWithItsTypeAndNothingInPlaceOfOthers)
{
    const auto system = QStringLiteral("other");
    const QVariantMap plain{
        {QStringLiteral("none"), QVariant()},
        {QStringLiteral("text"), QString()},
        {QStringLiteral("bool"), true},
        {QStringLiteral("int64"), std::numeric_limits<qint64>::min()},
        {QStringLiteral("double"), 1.0},
        {QStringLiteral("sum"), 0.1 + 0.2},
        {QStringLiteral("object"),
         QJsonObject{{QStringLiteral("big"), std::numeric_limits<qint64>::max()}}},
        {QStringLiteral("array"), QJsonArray{1, QJsonValue(), QStringLiteral("1")}},
        {QStringLiteral("map"), QVariantMap{{QStringLiteral("in"), QDate(2024, 2, 29)}}},
    };
    AbstractDocument document({});
    document.setPluginData(system, plain);
    QString error;
    const auto read = readBack(jsonOf(document), error);
    ASSERT_TRUE(read) << error.toStdString();
    EXPECT_EQ(read->getPluginData(system), plain);
    EXPECT_EQ(jsonOf(*read), jsonOf(document)); // the types too: values of several may be equal

    for (const auto &value : {QVariant(qQNaN()), QVariant(QByteArray("1"))}) {
        document.setPluginData(system, {{QStringLiteral("strange"), value}});
        QString reason;
        const auto json = documentjson::toJson(document, reason);
        EXPECT_NE(reason, QString());
        const auto others = documentjson::fromJson(json, error);
        ASSERT_TRUE(others) << error.toStdString();
        EXPECT_FALSE(others->getPluginData(system).value(QStringLiteral("strange")).isValid());
    }
}

TEST(ReceiptAsJson, OfAnHourThatComesTwiceOrOfAnotherZoneKeepsItsTimeOfDay)
{
    const auto saveAndLoad = [](const char *savingZone, const char *loadingZone, qint64 second) {
        const TimeZone saving(savingZone);
        const DocumentHeader header{1, 0, 0, 0, 0, QDateTime::fromSecsSinceEpoch(second)};
        const auto document = QSharedPointer<AbstractDocument>::create(header);
        const auto json = jsonOf(*document);
        const TimeZone loading(loadingZone);
        QString error;
        const auto read = readBack(json, error);
        const auto begun = read ? read->getHeader().dateTimeBeg : QDateTime();
        return std::pair(begun.toSecsSinceEpoch(), begun.time());
    };
    constexpr qint64 firstHalfPastTwo = 1'729'989'000; // 00:30 UTC on 27 October 2024
    for (const auto second : {firstHalfPastTwo, firstHalfPastTwo + 3600}) {
        EXPECT_EQ(saveAndLoad("Europe/Berlin", "Europe/Berlin", second).first, second);
        EXPECT_EQ(saveAndLoad("Europe/Berlin", "Asia/Omsk", second).second, QTime(2, 30));
    }
}

TEST(ReceiptAsJson, ThatIsDamagedForeignOrNewerIsRefusedByName)
{
    const auto changed = [](const char *from, const char *to) {
        EXPECT_TRUE(keptReceipt.contains(from)) << from;
        return QByteArray(keptReceipt).replace(from, to);
    };
    struct Case
    {
        QByteArray content;
        const char *expected;
    };
    const std::vector<Case> cases{
        {"{}", "format: expected \"till-receipt\""},
        {changed(R"("version":1)", R"("version":2)"), "version: written by a newer version"},
        {changed(R"("version":1)", R"("version":0)"), "version: expected"},
        {changed(R"("shift":45)", R"("shift":45.5)"), "header.shift: expected"},
        {changed(R"("shift":45)", R"("shift":3000000000)"), "header.shift: expected"},
        {changed(R"("2024-10-27T09)", R"("2024-10-27T25)"), "header.dateTimeBeg: expected"},
        {changed("+03:00", ""), "header.dateTimeBeg: expected"},
        {changed(R"("code":"002",)", ""), "items[1].code: expected"},
        {changed(R"("price":0.335)", R"("price":"0.335")"), "items[1].price: expected"},
        {changed(R"("posnum":4)", R"("posnum":1)"), "items[1]: expected"},
        {changed(R"("posnum":1}])", R"("posnum":9}])"), "impacts[0]: expected"},
        {changed(R"("sex":1)", R"("sex":2)"), "card.client.sex: expected"},
        {changed(R"("options":[2])", R"("options":[3])"), "card.client.options[0]: expected"},
        {changed(R"("options":[2])", R"("options":[2,2])"), "card.client.options[1]: expected"},
        {changed(R"("type":"int32")", R"("type":"int99")"),
         "pluginData.loyaltySystem24.value.visits.type: expected"},
        {changed(R"("value":12})", R"("value":"12"})"),
         "pluginData.loyaltySystem24.value.points.value: expected"},
    };
    for (const auto &[content, expected] : cases) {
        SCOPED_TRACE(expected);
        QString error;
        EXPECT_FALSE(readBack(content, error));
        EXPECT_TRUE(error.startsWith(QLatin1String(expected))) << error.toStdString();
    }
}
