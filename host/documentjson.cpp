#include "host/documentjson.h"

#include "host/abstractdocument.h"
#include "host/variantjson.h"

#include <QJsonArray>
#include <QTimeZone>

#include <cmath>

namespace documentjson {

namespace {

constexpr auto formatName = QLatin1String("till-receipt");
constexpr int formatVersion = 1;
constexpr auto formatKey = QLatin1String("format");
constexpr auto versionKey = QLatin1String("version");

// How a member of each type is written and read. What is read of a value that cannot stand there is
// written in another way.

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
    // Asks the system for nothing but the offset: it looks that up in a file, each time.
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

/// The same time of day even when the till's time zone has changed since.
void readValue(const QJsonValue &json, QDateTime &time)
{
    time = QDateTime::fromString(json.toString(), Qt::ISODateWithMs);
    // An hour that comes twice in autumn is told apart by the offset alone.
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
QJsonObject recordToJson(const Record &record, QString &error)
{
    QJsonObject json;
    Record::visitMembers(record, [&](QLatin1String name, const auto &member) {
        const auto value = valueToJson(member);
        if (value.isDouble() && !std::isfinite(value.toDouble()))
            error = QStringLiteral("a price, quantity or sum is not finite");
        json.insert(name, value);
    });
    return json;
}

template<typename Record>
void readRecord(const QJsonValue &json, Record &record)
{
    Record::visitMembers(record,
                         [&](QLatin1String name, auto &member) { readValue(json[name], member); });
}

QJsonValue cardToJson(const QSharedPointer<DocumentCardRecord> &record, QString &error)
{
    if (!record)
        return {};
    const auto client = record->getCard()->getClient();
    return QJsonObject{
        {QLatin1String("number"), variantjson::toJson(record->getNumber(), error)},
        {QLatin1String("client"), client ? QJsonValue(recordToJson(*client, error)) : QJsonValue()},
    };
}

QSharedPointer<DocumentCardRecord> cardFromJson(const QJsonValue &json)
{
    if (json.isNull())
        return {};
    const auto number = json[QLatin1String("number")].toObject();
    auto record = QSharedPointer<DocumentCardRecord>::create(variantjson::fromJson(number));
    const auto client = json[QLatin1String("client")];
    if (!client.isNull()) {
        record->getCard()->setClient(QSharedPointer<Client>::create());
        readRecord(client, *record->getCard()->getClient());
    }
    return record;
}

/// The receipt that the object describes where it describes one.
QSharedPointer<AbstractDocument> read(const QJsonObject &object)
{
    DocumentHeader header;
    readRecord(object.value(QLatin1String("header")), header);
    auto document = QSharedPointer<AbstractDocument>::create(header);
    for (const auto &json : object.value(QLatin1String("items")).toArray()) {
        const auto item = QSharedPointer<GoodsItem>::create(0, QString(), QString(), 0, 0);
        readRecord(json, *item);
        if (item->getPosnum() > 0 && !document->findGoodsItem(item->getPosnum()))
            document->restoreGoodsItem(item);
    }
    for (const auto &json : object.value(QLatin1String("impacts")).toArray()) {
        DocumentImpactDetail impact(0, 0, 0, 0, 0);
        readRecord(json, impact);
        document->restoreImpactDetail(impact);
    }
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
    if (object.value(versionKey).toInt() > formatVersion)
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
        items.append(recordToJson(*item, error));
        for (const auto &impact : document.getImpactDetails(item->getPosnum()))
            impacts.append(recordToJson(*impact, error));
    }
    QJsonObject pluginData;
    const auto &systems = document.allPluginData();
    for (auto system = systems.cbegin(); system != systems.cend(); ++system)
        pluginData.insert(system.key(), variantjson::toJson(system.value(), error));
    return {
        {formatKey, formatName},
        {versionKey, formatVersion},
        {QLatin1String("header"), recordToJson(document.getHeader(), error)},
        {QLatin1String("items"), items},
        {QLatin1String("impacts"), impacts},
        {QLatin1String("card"), cardToJson(document.getCardRecord(), error)},
        {QLatin1String("pluginData"), pluginData},
    };
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
