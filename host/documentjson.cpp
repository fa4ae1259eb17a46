#include "host/documentjson.h"

#include "host/abstractdocument.h"

#include <QJsonArray>
#include <QTimeZone>

namespace documentjson {

namespace {

constexpr auto formatName = QLatin1String("till-receipt");
constexpr int formatVersion = 1;
constexpr auto formatKey = QLatin1String("format");
constexpr auto versionKey = QLatin1String("version");
constexpr auto positionsKey = QLatin1String("positions");
constexpr auto impactsKey = QLatin1String("impacts");

// How each type of member is written and read. A value of the wrong type is read as some default,
// so writing it again gives another text: that is how such a value is found.

template<typename Value>
QJsonValue valueToJson(const Value &numberOrText)
{
    return numberOrText;
}

QJsonValue valueToJson(QDate date)
{
    return QJsonValue::fromVariant(date);
}

/// ISO text with the offset from UTC that is in force; null for an invalid time.
QJsonValue valueToJson(QDateTime time)
{
    if (!time.isValid())
        return {};
    // Asks the system only once, for the offset, because each question reads the time zone's file.
    time.setTimeZone(QTimeZone(time.offsetFromUtc()));
    return time.toString(Qt::ISODateWithMs);
}

QJsonValue valueToJson(Client::Sex sex)
{
    return static_cast<int>(sex);
}

QJsonValue valueToJson(const QList<ClientOptions> &options)
{
    QJsonArray json;
    for (const auto option : options)
        json.append(static_cast<int>(option));
    return json;
}

template<typename Value>
void readValue(const QJsonValue &json, Value &value)
{
    value = json.toVariant().value<Value>();
}

/// Keeps the time of day even when the till's time zone has changed since.
void readValue(const QJsonValue &json, QDateTime &time)
{
    time = QDateTime::fromString(json.toString(), Qt::ISODateWithMs);
    // In autumn one hour comes twice; only the offset distinguishes the two.
    const auto local = time.toLocalTime();
    if (local.offsetFromUtc() == time.offsetFromUtc())
        time = local;
}

void readValue(const QJsonValue &json, Client::Sex &sex)
{
    sex = json == static_cast<int>(Client::Sex::Female) ? Client::Sex::Female : Client::Sex::Male;
}

void readValue(const QJsonValue &json, QList<ClientOptions> &options)
{
    for (const auto &value : json.toArray()) {
        const auto option = static_cast<ClientOptions>(value.toInt());
        const auto isKnown =
            option == ClientOptions::NoPaperReceipt || option == ClientOptions::ElectronicReceipt;
        if (isKnown && !options.contains(option))
            options.append(option);
    }
}

template<typename Record>
QJsonObject recordToJson(const Record &record)
{
    QJsonObject json;
    Record::visitMembers(record, [&](QLatin1String name, const auto &member) {
        json.insert(name, valueToJson(member));
    });
    return json;
}

template<typename Record>
void readRecord(const QJsonValue &json, Record &record)
{
    Record::visitMembers(record,
                         [&](QLatin1String name, auto &member) { readValue(json[name], member); });
}

/// The object's members as variants; nested objects and arrays stay JSON.
QVariantMap mapFromJson(const QJsonObject &json)
{
    QVariantMap map;
    for (auto member = json.begin(); member != json.end(); ++member) {
        const QJsonValue value = member.value();
        auto kept = value.toVariant();
        if (value.isObject())
            kept = value.toObject();
        else if (value.isArray())
            kept = value.toArray();
        map.insert(member.key(), kept);
    }
    return map;
}

QJsonValue cardToJson(const QSharedPointer<DocumentCardRecord> &record)
{
    if (!record)
        return {};
    const auto client = record->getCard()->getClient();
    return QJsonObject{
        {QLatin1String("number"), QJsonValue::fromVariant(record->getNumber())},
        {QLatin1String("client"), client ? QJsonValue(recordToJson(*client)) : QJsonValue()},
    };
}

QSharedPointer<DocumentCardRecord> cardFromJson(const QJsonValue &json)
{
    if (json.isNull())
        return {};
    const auto number = json[QLatin1String("number")].toVariant();
    auto record = QSharedPointer<DocumentCardRecord>::create(number);
    const auto client = json[QLatin1String("client")];
    if (!client.isNull()) {
        record->getCard()->setClient(QSharedPointer<Client>::create());
        readRecord(client, *record->getCard()->getClient());
    }
    return record;
}

/// Reads the parts of the object that describe a receipt and skips the rest.
QSharedPointer<AbstractDocument> read(const QJsonObject &object)
{
    DocumentHeader header;
    readRecord(object.value(QLatin1String("header")), header);
    auto document = QSharedPointer<AbstractDocument>::create(header);
    for (const auto &json : object.value(positionsKey).toArray()) {
        const auto item = QSharedPointer<GoodsItem>::create(0, QString(), QString(), 0, 0);
        readRecord(json, *item);
        if (item->getPosnum() <= 0 || document->findGoodsItem(item->getPosnum()))
            continue; // not a position, or its number is taken
        document->restoreGoodsItem(item);
        for (const auto &impact : json[impactsKey].toArray()) {
            DocumentImpactDetail detail(0, 0, 0, 0, 0);
            readRecord(impact, detail);
            document->restoreImpactDetail(detail);
        }
    }
    document->setCardRecord(cardFromJson(object.value(QLatin1String("card"))));
    const auto systems = object.value(QLatin1String("pluginData")).toObject();
    for (auto system = systems.begin(); system != systems.end(); ++system)
        document->setPluginData(system.key(), mapFromJson(system.value().toObject()));
    return document;
}

} // namespace

QJsonObject headToJson(const AbstractDocument &document)
{
    QJsonObject pluginData;
    const auto &systems = document.allPluginData();
    for (auto system = systems.cbegin(); system != systems.cend(); ++system)
        pluginData.insert(system.key(), QJsonObject::fromVariantMap(system.value()));
    return {
        {formatKey, formatName},
        {versionKey, formatVersion},
        {QLatin1String("header"), recordToJson(document.getHeader())},
        {QLatin1String("card"), cardToJson(document.getCardRecord())},
        {QLatin1String("pluginData"), pluginData},
    };
}

QJsonObject positionToJson(const AbstractDocument &document, int posnum)
{
    const auto item = document.findGoodsItem(posnum);
    if (!item)
        return {};
    auto json = recordToJson(*item);
    QJsonArray impacts;
    for (const auto &impact : document.getImpactDetails(posnum))
        impacts.append(recordToJson(*impact));
    json.insert(impactsKey, impacts);
    return json;
}

QJsonObject toJson(const AbstractDocument &document)
{
    QJsonArray positions;
    for (const auto &item : document.getGoodsItems())
        positions.append(positionToJson(document, item->getPosnum()));
    auto json = headToJson(document);
    json.insert(positionsKey, positions);
    return json;
}

tl::expected<QSharedPointer<AbstractDocument>, QString> fromJson(const QJsonObject &object)
{
    if (object.value(formatKey) != formatName)
        return tl::unexpected(QStringLiteral("format: expected \"%1\"").arg(formatName));
    if (object.value(versionKey).toInt() > formatVersion)
        return tl::unexpected(
            QStringLiteral("version: written by a newer version, expected at most %1")
                .arg(formatVersion));
    auto document = read(object);
    // A missing, mistyped, damaged or unknown value is not written back the same.
    if (toJson(*document) != object)
        return tl::unexpected(QStringLiteral("expected values that a receipt can have"));
    return document;
}

} // namespace documentjson
