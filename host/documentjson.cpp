#include "host/documentjson.h"

#include "host/abstractdocument.h"
#include "host/variantjson.h"

#include <QJsonArray>

#include <cmath>

namespace documentjson {

namespace {

constexpr auto formatName = QLatin1String("till-receipt");
constexpr int formatVersion = 1;
constexpr auto formatKey = QLatin1String("format");
constexpr auto versionKey = QLatin1String("version");

/// ISO text with the offset from UTC that is in force; null for an invalid time.
QJsonValue timeToJson(const QDateTime &time)
{
    if (!time.isValid())
        return {};
    auto text = time.toOffsetFromUtc(time.offsetFromUtc()).toString(Qt::ISODateWithMs);
    if (text.endsWith(QLatin1Char('Z')))
        text.replace(text.size() - 1, 1, QLatin1String("+00:00"));
    return text;
}

/// The same time of day even when the till's time zone has changed since.
QDateTime timeFromJson(const QJsonValue &value)
{
    auto time = QDateTime::fromString(value.toString(), Qt::ISODateWithMs);
    // An hour that comes twice in autumn is told apart by the offset alone.
    const auto local = time.toLocalTime();
    return local.offsetFromUtc() == time.offsetFromUtc() ? local : time;
}

QJsonObject headerToJson(const DocumentHeader &header)
{
    return {
        {QLatin1String("kind"), header.kind},
        {QLatin1String("shopCode"), header.shopCode},
        {QLatin1String("cashCode"), header.cashCode},
        {QLatin1String("shift"), header.shift},
        {QLatin1String("num"), header.num},
        {QLatin1String("dateTimeBeg"), timeToJson(header.dateTimeBeg)},
    };
}

DocumentHeader headerFromJson(const QJsonObject &json)
{
    return {json.value(QLatin1String("kind")).toInt(),
            json.value(QLatin1String("shopCode")).toInt(),
            json.value(QLatin1String("cashCode")).toInt(),
            json.value(QLatin1String("shift")).toInt(),
            json.value(QLatin1String("num")).toInt(),
            timeFromJson(json.value(QLatin1String("dateTimeBeg")))};
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

QSharedPointer<GoodsItem> itemFromJson(const QJsonObject &json)
{
    auto item = QSharedPointer<GoodsItem>::create(
        json.value(QLatin1String("posnum")).toInt(), json.value(QLatin1String("code")).toString(),
        json.value(QLatin1String("name")).toString(), json.value(QLatin1String("price")).toDouble(),
        json.value(QLatin1String("quantity")).toDouble());
    item->setSumb(json.value(QLatin1String("sumb")).toDouble());
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

DocumentImpactDetail impactFromJson(const QJsonObject &json)
{
    return {json.value(QLatin1String("posnum")).toInt(),
            json.value(QLatin1String("campaignCode")).toInt(),
            json.value(QLatin1String("discountMode")).toInt(),
            json.value(QLatin1String("impactSource")).toInt(),
            json.value(QLatin1String("discountSum")).toDouble()};
}

QJsonObject clientToJson(const Client &client)
{
    QJsonArray options;
    for (const auto option : client.getOptions())
        options.append(static_cast<int>(option));
    return {
        {QLatin1String("name"), client.getName()},
        {QLatin1String("phoneNumber"), client.getPhoneNumber()},
        {QLatin1String("email"), client.getEmail()},
        {QLatin1String("options"), options},
        {QLatin1String("sex"), static_cast<int>(client.getSex())},
        {QLatin1String("birthday"), QJsonValue::fromVariant(client.getBirthday())},
    };
}

QSharedPointer<Client> clientFromJson(const QJsonObject &json)
{
    auto client = QSharedPointer<Client>::create();
    client->setName(json.value(QLatin1String("name")).toString());
    client->setPhoneNumber(json.value(QLatin1String("phoneNumber")).toString());
    client->setEmail(json.value(QLatin1String("email")).toString());
    const auto options = json.value(QLatin1String("options")).toArray();
    for (const auto &value : options) {
        const auto option = static_cast<ClientOptions>(value.toInt());
        if (option == ClientOptions::NoPaperReceipt || option == ClientOptions::ElectronicReceipt)
            client->setOption(option);
    }
    const auto female = json.value(QLatin1String("sex")) == static_cast<int>(Client::Sex::Female);
    client->setSex(female ? Client::Sex::Female : Client::Sex::Male);
    client->setBirthday(json.value(QLatin1String("birthday")).toVariant().toDate());
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

QSharedPointer<DocumentCardRecord> cardFromJson(const QJsonValue &json)
{
    if (json.isNull())
        return {};
    const auto number = json[QLatin1String("number")].toObject();
    auto record = QSharedPointer<DocumentCardRecord>::create(variantjson::fromJson(number));
    const auto client = json[QLatin1String("client")];
    if (!client.isNull())
        record->getCard()->setClient(clientFromJson(client.toObject()));
    return record;
}

/// The receipt that the object describes where it describes one.
QSharedPointer<AbstractDocument> read(const QJsonObject &object)
{
    auto document = QSharedPointer<AbstractDocument>::create(
        headerFromJson(object.value(QLatin1String("header")).toObject()));
    for (const auto &json : object.value(QLatin1String("items")).toArray()) {
        const auto item = itemFromJson(json.toObject());
        if (item->getPosnum() > 0 && !document->findGoodsItem(item->getPosnum()))
            document->restoreGoodsItem(item);
    }
    for (const auto &json : object.value(QLatin1String("impacts")).toArray())
        document->restoreImpactDetail(impactFromJson(json.toObject()));
    document->setCardRecord(cardFromJson(object.value(QLatin1String("card"))));
    const auto systems = object.value(QLatin1String("pluginData")).toObject();
    for (auto system = systems.begin(); system != systems.end(); ++system)
        document->setPluginData(system.key(),
                                variantjson::fromJson(system.value().toObject()).toMap());
    document->resetRevision();
    return document;
}

/// The way to the first value in which the two differ.
QString firstDifference(const QJsonValue &one, const QJsonValue &other, const QString &path = {})
{
    if (one.isArray() && other.isArray()) {
        for (qsizetype i = 0; i < one.toArray().size(); ++i) {
            if (one[i] != other[i])
                return firstDifference(one[i], other[i], QStringLiteral("%1[%2]").arg(path).arg(i));
        }
    } else if (one.isObject() && other.isObject()) {
        const auto dot = path.isEmpty() ? QString() : QStringLiteral(".");
        for (const auto &key : one.toObject().keys() + other.toObject().keys()) {
            if (one[key] != other[key])
                return firstDifference(one[key], other[key], path + dot + key);
        }
    }
    return path;
}

/// Why the object is no receipt that this version reads; empty when it may be one.
QString formatError(const QJsonObject &object)
{
    if (object.value(formatKey) != formatName)
        return QStringLiteral("format: expected \"%1\"").arg(formatName);
    if (isNewer(object))
        return QStringLiteral("version: written by a newer version, expected at most %1")
            .arg(formatVersion);
    return {};
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
        {QLatin1String("header"), headerToJson(document.getHeader())},
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
    error = formatError(object);
    if (!error.isEmpty())
        return {};
    auto document = read(object);
    // Whatever is missing, mistyped, damaged or unknown would be written in another way.
    const auto written = toJson(*document, error);
    if (written != object)
        error = QStringLiteral("%1: expected a value that a receipt can have there")
                    .arg(firstDifference(object, written));
    return error.isEmpty() ? document : nullptr;
}

} // namespace documentjson
