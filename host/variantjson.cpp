#include "host/variantjson.h"

#include <QJsonArray>
#include <QStringList>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace variantjson {

namespace {

template<typename Value>
QJsonValue asIs(const QVariant &value, QString & /*error*/)
{
    return value.value<Value>();
}

QJsonValue finiteToJson(const QVariant &value, QString &error)
{
    if (!std::isfinite(value.toDouble()))
        error = QStringLiteral("expected a finite number");
    return value.toDouble();
}

QJsonValue listToJson(const QVariant &value, QString &error)
{
    QJsonArray elements;
    for (const auto &element : value.toList())
        elements.append(toJson(element, error));
    return elements;
}

QJsonValue mapToJson(const QVariant &value, QString &error)
{
    QJsonObject members;
    const auto map = value.toMap();
    for (auto member = map.cbegin(); member != map.cend(); ++member)
        members.insert(member.key(), toJson(member.value(), error));
    return members;
}

template<typename Integer>
QVariant integerFromJson(const QJsonValue &content, QString &error)
{
    const auto number = content.toInteger(0);
    if (content.toInteger(1) == number &&
        number >= static_cast<qint64>(std::numeric_limits<Integer>::min()) &&
        number <= static_cast<qint64>(std::numeric_limits<Integer>::max()))
        return QVariant::fromValue(static_cast<Integer>(number));
    error = QStringLiteral("expected a whole number that fits its type");
    return {};
}

QVariant unsignedFromJson(const QJsonValue &content, QString &error)
{
    bool ok = false;
    const auto number = content.toString().toULongLong(&ok);
    if (!ok)
        error = QStringLiteral("expected a whole number as text");
    return number;
}

QVariant bytesFromJson(const QJsonValue &content, QString &error)
{
    const auto decoded = QByteArray::fromBase64Encoding(content.toString().toLatin1(),
                                                        QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded)
        error = QStringLiteral("expected bytes in base 64");
    return *decoded;
}

QVariant listFromJson(const QJsonValue &content, QString &error)
{
    QVariantList list;
    for (const auto &element : content.toArray())
        list.append(fromJson(element.toObject(), error));
    return list;
}

QVariant textsFromJson(const QJsonValue &content, QString &error)
{
    QStringList texts;
    for (const auto &element : content.toArray()) {
        if (!element.isString())
            error = QStringLiteral("expected texts");
        texts.append(element.toString());
    }
    return texts;
}

QVariant mapFromJson(const QJsonValue &content, QString &error)
{
    const auto members = content.toObject();
    QVariantMap map;
    for (auto member = members.constBegin(); member != members.constEnd(); ++member)
        map.insert(member.key(), fromJson(member.value().toObject(), error));
    return map;
}

using V = const QVariant &;
using J = const QJsonValue &;
using E = QString &;

/// A type that can be kept.
struct Type
{
    int id;
    QLatin1String name; ///< Stands in files, so it never changes.
    QJsonValue (*write)(const QVariant &value, QString &error);
    QJsonValue::Type json; ///< What `read` takes; `Undefined` when it looks for itself.
    QVariant (*read)(const QJsonValue &content, QString &error);
};

constexpr std::array types{
    Type{QMetaType::UnknownType, QLatin1String("none"), [](V, E) { return QJsonValue(); },
         QJsonValue::Undefined, [](J, E) { return QVariant(); }},
    Type{QMetaType::QString, QLatin1String("text"), asIs<QString>, QJsonValue::String,
         [](J content, E) { return QVariant(content.toString()); }},
    Type{QMetaType::Bool, QLatin1String("bool"), asIs<bool>, QJsonValue::Bool,
         [](J content, E) { return QVariant(content.toBool()); }},
    Type{QMetaType::Int, QLatin1String("int32"), asIs<qint64>, QJsonValue::Double,
         integerFromJson<int>},
    Type{QMetaType::LongLong, QLatin1String("int64"), asIs<qint64>, QJsonValue::Double,
         integerFromJson<qlonglong>},
    Type{QMetaType::UInt, QLatin1String("uint32"), asIs<qint64>, QJsonValue::Double,
         integerFromJson<uint>},
    // More than a JSON number holds.
    Type{QMetaType::ULongLong, QLatin1String("uint64"), asIs<QString>, QJsonValue::String,
         unsignedFromJson},
    Type{QMetaType::Double, QLatin1String("double"), finiteToJson, QJsonValue::Double,
         [](J content, E) { return QVariant(content.toDouble()); }},
    Type{QMetaType::QDate, QLatin1String("date"),
         [](V value, E) { return dateToJson(value.toDate()); }, QJsonValue::Undefined,
         [](J content, E error) { return QVariant(dateFromJson(content, error)); }},
    Type{QMetaType::QDateTime, QLatin1String("dateTime"),
         [](V value, E error) { return dateTimeToJson(value.toDateTime(), error); },
         QJsonValue::Undefined,
         [](J content, E error) { return QVariant(dateTimeFromJson(content, error)); }},
    Type{QMetaType::QByteArray, QLatin1String("bytes"),
         [](V value, E) { return QJsonValue(QLatin1String(value.toByteArray().toBase64())); },
         QJsonValue::String, bytesFromJson},
    Type{QMetaType::QJsonObject, QLatin1String("object"), asIs<QJsonObject>, QJsonValue::Object,
         [](J content, E) { return QVariant(content.toObject()); }},
    Type{QMetaType::QJsonArray, QLatin1String("array"), asIs<QJsonArray>, QJsonValue::Array,
         [](J content, E) { return QVariant(content.toArray()); }},
    Type{QMetaType::QStringList, QLatin1String("texts"),
         [](V value, E) { return QJsonValue(QJsonArray::fromStringList(value.toStringList())); },
         QJsonValue::Array, textsFromJson},
    Type{QMetaType::QVariantList, QLatin1String("list"), listToJson, QJsonValue::Array,
         listFromJson},
    Type{QMetaType::QVariantMap, QLatin1String("map"), mapToJson, QJsonValue::Object, mapFromJson},
};

} // namespace

QJsonObject toJson(const QVariant &value, QString &error)
{
    const auto *const type = std::find_if(
        types.begin(), types.end(), [&value](const Type &t) { return t.id == value.typeId(); });
    if (type == types.end()) {
        error = QStringLiteral("a value of the type %1 cannot be kept")
                    .arg(QLatin1String(value.typeName()));
        return {};
    }
    return {{QLatin1String("type"), type->name},
            {QLatin1String("value"), type->write(value, error)}};
}

QVariant fromJson(const QJsonObject &object, QString &error)
{
    const auto name = object.value(QLatin1String("type")).toString();
    const auto *const type =
        std::find_if(types.begin(), types.end(), [&name](const Type &t) { return t.name == name; });
    if (type == types.end()) {
        error = QStringLiteral("expected an object with a known \"type\"");
        return {};
    }
    const auto content = object.value(QLatin1String("value"));
    if (type->json != QJsonValue::Undefined && content.type() != type->json) {
        error = QStringLiteral("expected a value of its type");
        return {};
    }
    return type->read(content, error);
}

QJsonValue dateTimeToJson(const QDateTime &time, QString &error)
{
    if (!time.isValid())
        return {};
    if (time.timeSpec() == Qt::UTC)
        return time.toString(Qt::ISODateWithMs);
    if (time.timeSpec() != Qt::LocalTime)
        error = QStringLiteral("expected a local or a UTC time");
    auto text = time.toOffsetFromUtc(time.offsetFromUtc()).toString(Qt::ISODateWithMs);
    if (text.endsWith(QLatin1Char('Z')))
        text.replace(text.size() - 1, 1, QLatin1String("+00:00"));
    return text;
}

QDateTime dateTimeFromJson(const QJsonValue &value, QString &error)
{
    if (value.isNull())
        return {};
    const auto text = value.toString();
    auto time = QDateTime::fromString(text, Qt::ISODateWithMs);
    if (!time.isValid() || time.timeSpec() == Qt::LocalTime) {
        error = QStringLiteral("expected a time with its offset, or null");
        return {};
    }
    if (text.endsWith(QLatin1Char('Z')))
        return time;
    // An hour that comes twice in autumn is told apart by the offset alone.
    const auto local = time.toLocalTime();
    const auto sameDigits = local.date() == time.date() && local.time() == time.time();
    return sameDigits ? local : QDateTime(time.date(), time.time());
}

QJsonValue dateToJson(QDate date)
{
    return date.isValid() ? QJsonValue(date.toString(Qt::ISODate)) : QJsonValue();
}

QDate dateFromJson(const QJsonValue &value, QString &error)
{
    if (value.isNull())
        return {};
    const auto date = QDate::fromString(value.toString(), Qt::ISODate);
    if (!date.isValid())
        error = QStringLiteral("expected a date, or null");
    return date;
}

} // namespace variantjson
