#include "host/variantjson.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QStringList>

#include <array>
#include <cmath>
#include <limits>

namespace variantjson {

namespace {

struct TypeName
{
    int type;
    QLatin1String name;
};

// The names stand in files, so they never change.
const std::array typeNames{
    TypeName{QMetaType::UnknownType, QLatin1String("none")},
    TypeName{QMetaType::QString, QLatin1String("text")},
    TypeName{QMetaType::Bool, QLatin1String("bool")},
    TypeName{QMetaType::Int, QLatin1String("int32")},
    TypeName{QMetaType::LongLong, QLatin1String("int64")},
    TypeName{QMetaType::UInt, QLatin1String("uint32")},
    TypeName{QMetaType::ULongLong, QLatin1String("uint64")},
    TypeName{QMetaType::Double, QLatin1String("double")},
    TypeName{QMetaType::QDate, QLatin1String("date")},
    TypeName{QMetaType::QDateTime, QLatin1String("dateTime")},
    TypeName{QMetaType::QByteArray, QLatin1String("bytes")},
    TypeName{QMetaType::QJsonObject, QLatin1String("object")},
    TypeName{QMetaType::QJsonArray, QLatin1String("array")},
    TypeName{QMetaType::QStringList, QLatin1String("texts")},
    TypeName{QMetaType::QVariantList, QLatin1String("list")},
    TypeName{QMetaType::QVariantMap, QLatin1String("map")},
};

QJsonValue contentToJson(const QVariant &value, QString &error)
{
    switch (value.typeId()) {
    case QMetaType::UnknownType:
        return {};
    case QMetaType::QString:
        return value.toString();
    case QMetaType::Bool:
        return value.toBool();
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::UInt:
        return value.toLongLong();
    case QMetaType::ULongLong: // more than a JSON number holds
        return QString::number(value.toULongLong());
    case QMetaType::Double:
        if (!std::isfinite(value.toDouble()))
            error = QStringLiteral("expected a finite number");
        return value.toDouble();
    case QMetaType::QDate:
        return dateToJson(value.toDate());
    case QMetaType::QDateTime:
        return dateTimeToJson(value.toDateTime(), error);
    case QMetaType::QByteArray:
        return QString::fromLatin1(value.toByteArray().toBase64());
    case QMetaType::QJsonObject:
        return value.toJsonObject();
    case QMetaType::QJsonArray:
        return value.toJsonArray();
    case QMetaType::QStringList:
        return QJsonArray::fromStringList(value.toStringList());
    case QMetaType::QVariantList: {
        QJsonArray elements;
        for (const auto &element : value.toList())
            elements.append(toJson(element, error));
        return elements;
    }
    case QMetaType::QVariantMap: {
        QJsonObject members;
        const auto map = value.toMap();
        for (auto member = map.cbegin(); member != map.cend(); ++member)
            members.insert(member.key(), toJson(member.value(), error));
        return members;
    }
    default:
        error = QStringLiteral("a value of the type %1 cannot be kept")
                    .arg(QLatin1String(value.typeName()));
        return {};
    }
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
    if (!decoded || !content.isString())
        error = QStringLiteral("expected bytes in base 64");
    return *decoded;
}

QVariant listFromJson(const QJsonArray &elements, QString &error)
{
    QVariantList list;
    for (const auto &element : elements)
        list.append(fromJson(element.toObject(), error));
    return list;
}

QVariant textsFromJson(const QJsonArray &elements, QString &error)
{
    QStringList texts;
    for (const auto &element : elements) {
        if (!element.isString())
            error = QStringLiteral("expected texts");
        texts.append(element.toString());
    }
    return texts;
}

QVariant mapFromJson(const QJsonObject &members, QString &error)
{
    QVariantMap map;
    for (auto member = members.begin(); member != members.end(); ++member)
        map.insert(member.key(), fromJson(member.value().toObject(), error));
    return map;
}

QJsonValue::Type contentType(int type)
{
    switch (type) {
    case QMetaType::Bool:
        return QJsonValue::Bool;
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::UInt:
    case QMetaType::Double:
        return QJsonValue::Double;
    case QMetaType::QString:
    case QMetaType::ULongLong:
    case QMetaType::QByteArray:
        return QJsonValue::String;
    case QMetaType::QJsonArray:
    case QMetaType::QStringList:
    case QMetaType::QVariantList:
        return QJsonValue::Array;
    case QMetaType::QJsonObject:
    case QMetaType::QVariantMap:
        return QJsonValue::Object;
    default:
        return QJsonValue::Undefined;
    }
}

QVariant contentFromJson(int type, const QJsonValue &content, QString &error)
{
    if (const auto expected = contentType(type);
        expected != QJsonValue::Undefined && content.type() != expected) {
        error = QStringLiteral("expected a value of its type");
        return {};
    }
    switch (type) {
    case QMetaType::QString:
        return content.toString();
    case QMetaType::Bool:
        return content.toBool();
    case QMetaType::Int:
        return integerFromJson<int>(content, error);
    case QMetaType::LongLong:
        return integerFromJson<qlonglong>(content, error);
    case QMetaType::UInt:
        return integerFromJson<uint>(content, error);
    case QMetaType::ULongLong:
        return unsignedFromJson(content, error);
    case QMetaType::Double:
        return content.toDouble();
    case QMetaType::QDate:
        return dateFromJson(content, error);
    case QMetaType::QDateTime:
        return dateTimeFromJson(content, error);
    case QMetaType::QByteArray:
        return bytesFromJson(content, error);
    case QMetaType::QJsonObject:
        return content.toObject();
    case QMetaType::QJsonArray:
        return content.toArray();
    case QMetaType::QStringList:
        return textsFromJson(content.toArray(), error);
    case QMetaType::QVariantList:
        return listFromJson(content.toArray(), error);
    case QMetaType::QVariantMap:
        return mapFromJson(content.toObject(), error);
    default:
        return {};
    }
}

} // namespace

QJsonObject toJson(const QVariant &value, QString &error)
{
    const auto content = contentToJson(value, error);
    for (const auto &[type, name] : typeNames) {
        if (type == value.typeId())
            return {{QLatin1String("type"), name}, {QLatin1String("value"), content}};
    }
    return {};
}

QVariant fromJson(const QJsonObject &object, QString &error)
{
    const auto wanted = object.value(QLatin1String("type")).toString();
    for (const auto &[type, name] : typeNames) {
        if (name == wanted)
            return contentFromJson(type, object.value(QLatin1String("value")), error);
    }
    error = QStringLiteral("expected an object with a known \"type\"");
    return {};
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
