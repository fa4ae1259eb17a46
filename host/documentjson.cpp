#include "host/documentjson.h"

#include "host/abstractdocument.h"
#include "host/jsonmembers.h"
#include "host/variantjson.h"

#include <QJsonArray>

#include <array>
#include <cmath>

namespace documentjson {

namespace {

constexpr auto formatName = QLatin1String("till-receipt");
constexpr int formatVersion = 1;
constexpr auto formatKey = QLatin1String("format");
constexpr auto versionKey = QLatin1String("version");

constexpr std::array allOptions{ClientOptions::NoPaperReceipt, ClientOptions::ElectronicReceipt};

QJsonObject headerToJson(const DocumentHeader &header, QString &error)
{
    return {
        {QLatin1String("kind"), header.kind},
        {QLatin1String("shopCode"), header.shopCode},
        {QLatin1String("cashCode"), header.cashCode},
        {QLatin1String("shift"), header.shift},
        {QLatin1String("num"), header.num},
        {QLatin1String("dateTimeBeg"), variantjson::dateTimeToJson(header.dateTimeBeg, error)},
    };
}

DocumentHeader headerFromJson(const JsonMembers &members)
{
    DocumentHeader header;
    header.kind = members.integer(QLatin1String("kind"));
    header.shopCode = members.integer(QLatin1String("shopCode"));
    header.cashCode = members.integer(QLatin1String("cashCode"));
    header.shift = members.integer(QLatin1String("shift"));
    header.num = members.integer(QLatin1String("num"));
    header.dateTimeBeg = members.dateTime(QLatin1String("dateTimeBeg"));
    return header;
}

double finite(double number, QString &error)
{
    if (!std::isfinite(number))
        error = QStringLiteral("a price, quantity or sum is not finite");
    return number;
}

QJsonObject itemToJson(const GoodsItem &item, QString &error)
{
    return {
        {QLatin1String("posnum"), item.getPosnum()},
        {QLatin1String("code"), item.getCode()},
        {QLatin1String("name"), item.getName()},
        {QLatin1String("price"), finite(item.getPrice(), error)},
        {QLatin1String("quantity"), finite(item.getQuantity(), error)},
        {QLatin1String("sumb"), finite(item.getSumb(), error)},
    };
}

QSharedPointer<GoodsItem> itemFromJson(const JsonMembers &members)
{
    auto item = QSharedPointer<GoodsItem>::create(
        members.integer(QLatin1String("posnum")), members.text(QLatin1String("code")),
        members.text(QLatin1String("name")), members.number(QLatin1String("price")),
        members.number(QLatin1String("quantity")));
    item->setSumb(members.number(QLatin1String("sumb")));
    return item;
}

QJsonObject impactToJson(const DocumentImpactDetail &impact, QString &error)
{
    return {
        {QLatin1String("posnum"), impact.getPosnum()},
        {QLatin1String("campaignCode"), impact.getCampaignCode()},
        {QLatin1String("discountMode"), impact.getDiscountMode()},
        {QLatin1String("impactSource"), impact.getImpactSource()},
        {QLatin1String("discountSum"), finite(impact.getDiscountSum(), error)},
    };
}

DocumentImpactDetail impactFromJson(const JsonMembers &members)
{
    return {members.integer(QLatin1String("posnum")),
            members.integer(QLatin1String("campaignCode")),
            members.integer(QLatin1String("discountMode")),
            members.integer(QLatin1String("impactSource")),
            members.number(QLatin1String("discountSum"))};
}

QJsonObject clientToJson(const Client &client)
{
    QJsonArray options;
    for (const auto option : allOptions) {
        if (client.hasOption(option))
            options.append(static_cast<int>(option));
    }
    return {
        {QLatin1String("name"), client.getName()},
        {QLatin1String("phoneNumber"), client.getPhoneNumber()},
        {QLatin1String("email"), client.getEmail()},
        {QLatin1String("options"), options},
        {QLatin1String("sex"), static_cast<int>(client.getSex())},
        {QLatin1String("birthday"), variantjson::dateToJson(client.getBirthday())},
    };
}

QSharedPointer<Client> clientFromJson(const JsonMembers &members)
{
    auto client = QSharedPointer<Client>::create();
    client->setName(members.text(QLatin1String("name")));
    client->setPhoneNumber(members.text(QLatin1String("phoneNumber")));
    client->setEmail(members.text(QLatin1String("email")));
    for (const auto &code : members.array(QLatin1String("options"))) {
        for (const auto option : allOptions) {
            if (code.toInt() == static_cast<int>(option))
                client->setOption(option);
        }
    }
    const auto sex = members.integer(QLatin1String("sex"));
    if (sex != static_cast<int>(Client::Sex::Male) && sex != static_cast<int>(Client::Sex::Female))
        members.fail(QLatin1String("sex"), QStringLiteral("expected 0 or 1"));
    client->setSex(static_cast<Client::Sex>(sex));
    client->setBirthday(members.date(QLatin1String("birthday")));
    return client;
}

QJsonValue cardToJson(const QSharedPointer<DocumentCardRecord> &record, QString &error)
{
    if (!record)
        return {};
    const auto client = record->getCard()->getClient();
    return QJsonObject{
        {QLatin1String("number"), variantjson::toJson(record->getNumber(), error)},
        {QLatin1String("client"), client ? QJsonValue(clientToJson(*client)) : QJsonValue()},
    };
}

QSharedPointer<DocumentCardRecord> cardFromJson(const JsonMembers &members)
{
    auto record =
        QSharedPointer<DocumentCardRecord>::create(members.variant(QLatin1String("number")));
    if (!members.isNull(QLatin1String("client")))
        record->getCard()->setClient(clientFromJson(members.object(QLatin1String("client"))));
    return record;
}

void readPositions(const JsonMembers &members, AbstractDocument &document)
{
    for (const auto &element : members.objects(QLatin1String("items"))) {
        const auto item = itemFromJson(element);
        if (item->getPosnum() < 1 || document.findGoodsItem(item->getPosnum()))
            element.fail(QLatin1String("posnum"),
                         QStringLiteral("expected a positive number that no position before has"));
        document.restoreGoodsItem(item);
    }
    for (const auto &element : members.objects(QLatin1String("impacts"))) {
        const auto impact = impactFromJson(element);
        if (!document.findGoodsItem(impact.getPosnum()))
            element.fail(QLatin1String("posnum"), QStringLiteral("expected a position's number"));
        document.restoreImpactDetail(impact);
    }
}

/// Whether the object is a receipt that this version reads.
bool checkFormat(const JsonMembers &members)
{
    if (members.text(formatKey) != formatName)
        members.fail(formatKey, QStringLiteral("expected \"%1\"").arg(formatName));
    const auto version = members.integer(versionKey);
    if (version > formatVersion)
        members.fail(
            versionKey,
            QStringLiteral("written by a newer version, expected at most %1").arg(formatVersion));
    else if (version < 1)
        members.fail(versionKey, QStringLiteral("expected a positive number"));
    return members.good();
}

} // namespace

QJsonObject toJson(const AbstractDocument &document, QString &error)
{
    QJsonArray items;
    QJsonArray impacts;
    for (const auto &item : document.getGoodsItems()) {
        items.append(itemToJson(*item, error));
        for (const auto &impact : document.getImpactDetails(item->getPosnum()))
            impacts.append(impactToJson(*impact, error));
    }
    QJsonObject pluginData;
    const auto &systems = document.allPluginData();
    for (auto system = systems.cbegin(); system != systems.cend(); ++system)
        pluginData.insert(system.key(), variantjson::toJson(system.value(), error));
    return {
        {formatKey, formatName},
        {versionKey, formatVersion},
        {QLatin1String("header"), headerToJson(document.getHeader(), error)},
        {QLatin1String("items"), items},
        {QLatin1String("impacts"), impacts},
        {QLatin1String("card"), cardToJson(document.getCardRecord(), error)},
        {QLatin1String("pluginData"), pluginData},
    };
}

bool isNewer(const QJsonObject &object)
{
    return object.value(formatKey) == formatName &&
           object.value(versionKey).toInt() > formatVersion;
}

QSharedPointer<AbstractDocument> fromJson(const QJsonObject &object, QString &error)
{
    const JsonMembers members(object, error);
    if (!checkFormat(members))
        return {};
    auto document = QSharedPointer<AbstractDocument>::create(
        headerFromJson(members.object(QLatin1String("header"))));
    readPositions(members, *document);
    if (!members.isNull(QLatin1String("card")))
        document->setCardRecord(cardFromJson(members.object(QLatin1String("card"))));
    const auto pluginData = members.object(QLatin1String("pluginData"));
    for (const auto &system : pluginData.keys()) {
        const auto data = pluginData.variant(system);
        if (data.typeId() != QMetaType::QVariantMap)
            pluginData.fail(system, QStringLiteral("expected a map"));
        document->setPluginData(system, data.toMap());
    }
    document->resetRevision();
    return members.good() ? document : nullptr;
}

} // namespace documentjson
