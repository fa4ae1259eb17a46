#include "host/variantjson.h"

#include <algorithm>
#include <array>

namespace variantjson {

namespace {

constexpr auto typeKey = QLatin1String("type");
constexpr auto valueKey = QLatin1String("value");

/// A type that can be kept.
struct Type
{
    int id;             ///< One of `QMetaType::Type`.
    QLatin1String name; ///< Stands with receipts, so it never changes.
};

constexpr std::array types{
    Type{QMetaType::UnknownType, QLatin1String("none")},
    Type{QMetaType::QString, QLatin1String("text")},
    Type{QMetaType::Bool, QLatin1String("bool")},
    Type{QMetaType::Int, QLatin1String("int32")},
    Type{QMetaType::LongLong, QLatin1String("int64")},
    Type{QMetaType::Double, QLatin1String("double")},
    Type{QMetaType::QDate, QLatin1String("date")},
    Type{QMetaType::QJsonObject, QLatin1String("object")},
    Type{QMetaType::QJsonArray, QLatin1String("array")},
    Type{QMetaType::QVariantMap, QLatin1String("map")},
};

QJsonObject mapToJson(const QVariantMap &map, QString &error)
{
    QJsonObject members;
    for (auto member = map.cbegin(); member != map.cend(); ++member)
        members.insert(member.key(), toJson(member.value(), error));
    return members;
}

QVariantMap mapFromJson(const QJsonObject &members)
{
    QVariantMap map;
    for (auto member = members.begin(); member != members.end(); ++member)
        map.insert(member.key(), fromJson(member.value().toObject()));
    return map;
}

} // namespace

QJsonObject toJson(const QVariant &value, QString &error)
{
    const auto *const type = std::ranges::find(types, value.typeId(), &Type::id);
    if (type == types.end()) {
        error = QStringLiteral("a value of the type %1 cannot be kept")
                    .arg(QLatin1String(value.typeName()));
        return toJson({}, error);
    }
    const auto content = type->id == QMetaType::QVariantMap ? mapToJson(value.toMap(), error)
                                                            : QJsonValue::fromVariant(value);
    if (type->id == QMetaType::Double && !content.isDouble()) {
        error = QStringLiteral("a number that is not finite cannot be kept");
        return toJson({}, error);
    }
    return {{typeKey, type->name}, {valueKey, content}};
}

QVariant fromJson(const QJsonObject &object)
{
    const auto name = object.value(typeKey).toString();
    const auto *const type = std::ranges::find(types, name, &Type::name);
    if (type == types.end())
        return {};
    const auto content = object.value(valueKey);
    if (type->id == QMetaType::QVariantMap)
        return mapFromJson(content.toObject());
    auto value = content.toVariant();
    value.convert(QMetaType(type->id)); // an invalid date of null, as it was written
    return value;
}

} // namespace variantjson
