#include "host/documentjson.h"

#include "host/abstractdocument.h"

#include <QJsonArray>
#include <QTimeZone>

using namespace Qt::StringLiterals;

namespace documentjson {

namespace {

constexpr auto formatName = "till-receipt"_L1;
constexpr int formatVersion = 1;
constexpr auto formatKey = "format"_L1;
constexpr auto versionKey = "version"_L1;
constexpr auto positionsKey = "positions"_L1;
constexpr auto impactsKey = "impacts"_L1;

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
        {"number"_L1, QJsonValue::fromVariant(record->getNumber())},
        {"client"_L1, client ? QJsonValue(recordToJson(*client)) : QJsonValue()},
    };
}

QSharedPointer<DocumentCardRecord> cardFromJson(const QJsonValue &json)
{
    if (json.isNull())
        return {};
    const auto number = json["number"_L1].toVariant();
    auto record = QSharedPointer<DocumentCardRecord>::create(number);
    const auto client = json["client"_L1];
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
    readRecord(object.value("header"_L1), header);
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
    document->setCardRecord(cardFromJson(object.value("card"_L1)));
    const auto systems = object.value("pluginData"_L1).toObject();
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
        {"header"_L1, recordToJson(document.getHeader())},
        {"card"_L1, cardToJson(document.getCardRecord())},
        {"pluginData"_L1, pluginData},
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
        return tl::unexpected(u"format: expected \"%1\""_s.arg(formatName));
    if (object.value(versionKey).toInt() > formatVersion)
        return tl::unexpected(
            u"version: written by a newer version, expected at most %1"_s.arg(formatVersion));
    auto document = read(object);
    // A missing, mistyped, damaged or unknown value is not written back the same.
    if (toJson(*document) != object)
        return tl::unexpected(u"expected values that a receipt can have"_s);
    return document;
}

} // namespace documentjson
