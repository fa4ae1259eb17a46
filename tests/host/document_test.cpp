#include "support.h"

#include <host/abstractdocument.h>
#include <host/documentjson.h>

#include <QJsonDocument>
#include <QJsonObject>

#include <ctime>
#include <limits>
#include <vector>

namespace {

QSharedPointer<AbstractDocument> fullReceipt()
{
    const DocumentHeader header{1, 12, 3, 45, 678, QDateTime(QDate(2024, 10, 27), QTime(2, 30))};
    auto document = QSharedPointer<AbstractDocument>::create(header);
    document->addGoodsItem(QStringLiteral("001"), QStringLiteral("Хлеб \"\\\n\u0001"), 0.335, 3);
    document->addGoodsItem(QStringLiteral("002"), {}, 1e15 + 0.125, 0.1 + 0.2);
    document->addImpactDetail({2, 15, 0, 0, 0.07});
    document->addImpactDetail({1, 7, 6, 0, 0.01});
    document->addImpactDetail({2, 16, 1, 1, 1e-3});

    auto client = QSharedPointer<Client>::create();
    client->setName(QStringLiteral("Анна"));
    client->setOption(ClientOptions::ElectronicReceipt);
    client->setSex(Client::Sex::Female);
    auto card = QSharedPointer<DocumentCardRecord>::create(QStringLiteral("+79001234567"));
    card->getCard()->setClient(client);
    document->setCardRecord(card);

    const QJsonObject customer{{QStringLiteral("birthDate"), QJsonValue()},
                               {QStringLiteral("big"), std::numeric_limits<qint64>::max()}};
    document->setPluginData(
        QStringLiteral("loyaltySystem24"),
        {{QStringLiteral("customer"), customer},
         {QStringLiteral("none"), QVariant()},
         {QStringLiteral("int64"), std::numeric_limits<qint64>::min()},
         {QStringLiteral("uint64"), std::numeric_limits<quint64>::max()},
         {QStringLiteral("double"), 1.0},
         {QStringLiteral("bytes"), QByteArray("\0\xff", 2)},
         {QStringLiteral("noDate"), QDate()},
         {QStringLiteral("utc"), QDateTime::fromMSecsSinceEpoch(1'700'000'000'123).toUTC()},
         {QStringLiteral("list"), QVariantList{1, QStringLiteral("1"), QVariantMap()}},
         {QStringLiteral("texts"), QStringList{QString(), QStringLiteral("x")}}});
    document->setPluginData(QStringLiteral("other"), {});
    return document;
}

QVariantList positions(const AbstractDocument &document)
{
    QVariantList result;
    for (const auto &item : document.getGoodsItems()) {
        result << item->getPosnum() << item->getCode() << item->getName() << item->getPrice()
               << item->getQuantity() << item->getSumb();
        for (const auto &impact : document.getImpactDetails(item->getPosnum()))
            result << impact->getPosnum() << impact->getCampaignCode() << impact->getDiscountMode()
                   << impact->getImpactSource() << impact->getDiscountSum();
    }
    return result;
}

using ReceiptFile = WithFiles;

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

TEST_F(ReceiptFile, GivesTheSameReceiptBack)
{
    const auto saved = fullReceipt();
    QString error;
    const auto read = readBack(jsonOf(*saved), error);
    ASSERT_TRUE(read) << error.toStdString();
    EXPECT_EQ(read->getHeader(), saved->getHeader());
    EXPECT_EQ(positions(*read), positions(*saved));
    ASSERT_TRUE(read->getCardRecord());
    EXPECT_EQ(read->getCardRecord()->getNumber(), saved->getCardRecord()->getNumber());
    EXPECT_EQ(*read->getCardRecord()->getCard()->getClient(),
              *saved->getCardRecord()->getCard()->getClient());
    EXPECT_EQ(read->allPluginData(), saved->allPluginData());
    EXPECT_EQ(read->getRevision(), 0);
    // Variants of different types may be equal.
    const auto system = QStringLiteral("loyaltySystem24");
    for (const auto &[key, value] : saved->getPluginData(system).toStdMap())
        EXPECT_EQ(read->getPluginData(system).value(key).typeId(), value.typeId())
            << key.toStdString();
}

TEST_F(ReceiptFile, OfAnHourThatComesTwiceOrOfAnotherZoneKeepsItsTimeOfDay)
{
    const auto zone = qgetenv("TZ");
    const auto saveAndLoad = [](const char *savingZone, const char *loadingZone, qint64 second) {
        const auto use = [](const char *name) {
            qputenv("TZ", name);
            ::tzset();
        };
        use(savingZone);
        const DocumentHeader header{1, 0, 0, 0, 0, QDateTime::fromSecsSinceEpoch(second)};
        const auto document = QSharedPointer<AbstractDocument>::create(header);
        const auto json = jsonOf(*document);
        use(loadingZone);
        QString error;
        const auto read = readBack(json, error);
        return read ? read->getHeader().dateTimeBeg : QDateTime();
    };
    constexpr qint64 firstHalfPastTwo = 1'729'989'000; // 00:30 UTC on 27 October 2024
    for (const auto second : {firstHalfPastTwo, firstHalfPastTwo + 3600}) {
        EXPECT_EQ(saveAndLoad("Europe/Berlin", "Europe/Berlin", second).toSecsSinceEpoch(), second);
        EXPECT_EQ(saveAndLoad("Europe/Berlin", "Asia/Omsk", second).time(), QTime(2, 30));
    }
    zone.isNull() ? qunsetenv("TZ") : qputenv("TZ", zone);
    ::tzset();
}

TEST_F(ReceiptFile, ThatIsDamagedForeignOrNewerIsRefusedByName)
{
    const auto json = jsonOf(*fullReceipt());
    const auto changed = [&json](const char *from, const char *to) {
        EXPECT_TRUE(json.contains(from)) << from;
        return QByteArray(json).replace(from, to);
    };
    struct Case
    {
        QByteArray content;
        const char *expected;
    };
    const std::vector<Case> cases{
        {"{}", "format: expected"},
        {changed(R"("version":1)", R"("version":2)"), "version: written by a newer version"},
        {changed(R"("shift":45)", R"("shift":45.5)"), "header.shift: expected a whole number"},
        {changed(R"("shift":45)", R"("shift":3000000000)"),
         "header.shift: expected a whole number"},
        {changed(R"("dateTimeBeg":"2024)", R"("dateTimeBeg":"x)"), "header.dateTimeBeg: expected"},
        {changed(R"("code":"002")", R"("code":2)"), "items[1].code: expected a text"},
        {changed(R"("price":0.335)", R"("prize":0.335)"), "items[0].price: expected a number"},
        {changed(R"("posnum":2,"price")", R"("posnum":1,"price")"), "items[1].posnum: expected"},
        {changed(R"("impactSource":1,"posnum":2)", R"("impactSource":1,"posnum":9)"),
         "impacts[2].posnum: expected a position's number"},
        {changed(R"("sex":1)", R"("sex":2)"), "card.client.sex: expected"},
        {changed(R"("type":"int64")", R"("type":"int99")"), "pluginData.loyaltySystem24: "},
        {changed(R"("type":"bytes")", R"("type":"bool")"), "pluginData.loyaltySystem24: "},
    };
    for (const auto &[content, expected] : cases) {
        SCOPED_TRACE(expected);
        QString error;
        EXPECT_FALSE(readBack(content, error));
        EXPECT_TRUE(error.contains(QLatin1String(expected))) << error.toStdString();
    }
}
