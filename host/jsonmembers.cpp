#include "host/jsonmembers.h"

#include "host/variantjson.h"

#include <cmath>
#include <limits>
#include <utility>

namespace {

QJsonValue valueOf(const QJsonObject &object, QAnyStringView key)
{
    return object.value(key.toString());
}

} // namespace

JsonMembers::JsonMembers(QJsonObject object, QString &error)
    : members(std::move(object))
    , error(&error)
{}

JsonMembers::JsonMembers(QJsonObject object, QString path, QString *error)
    : members(std::move(object))
    , path(std::move(path))
    , error(error)
{}

QString JsonMembers::text(QAnyStringView key) const
{
    return typed(key, QJsonValue::String, "expected a text").toString();
}

double JsonMembers::number(QAnyStringView key) const
{
    return typed(key, QJsonValue::Double, "expected a number").toDouble();
}

int JsonMembers::integer(QAnyStringView key) const
{
    const auto value = number(key);
    if (value == std::trunc(value) && value >= std::numeric_limits<int>::min() &&
        value <= std::numeric_limits<int>::max())
        return static_cast<int>(value);
    fail(key, QStringLiteral("expected a whole number of 32 bits"));
    return 0;
}

QDate JsonMembers::date(QAnyStringView key) const
{
    QString reason;
    const auto date = variantjson::dateFromJson(valueOf(members, key), reason);
    if (!reason.isEmpty())
        fail(key, reason);
    return date;
}

QDateTime JsonMembers::dateTime(QAnyStringView key) const
{
    QString reason;
    auto time = variantjson::dateTimeFromJson(valueOf(members, key), reason);
    if (!reason.isEmpty())
        fail(key, reason);
    return time;
}

QVariant JsonMembers::variant(QAnyStringView key) const
{
    QString reason;
    auto value = variantjson::fromJson(valueOf(members, key).toObject(), reason);
    if (!reason.isEmpty())
        fail(key, reason);
    return value;
}

QJsonArray JsonMembers::array(QAnyStringView key) const
{
    return typed(key, QJsonValue::Array, "expected an array").toArray();
}

JsonMembers JsonMembers::object(QAnyStringView key) const
{
    const auto value = typed(key, QJsonValue::Object, "expected an object");
    return {value.toObject(), path + key.toString() + QLatin1Char('.'), error};
}

QList<JsonMembers> JsonMembers::objects(QAnyStringView key) const
{
    QList<JsonMembers> result;
    const auto elements = array(key);
    for (qsizetype i = 0; i < elements.size(); ++i) {
        const auto name = QStringLiteral("%1[%2]").arg(key.toString(), QString::number(i));
        if (!elements.at(i).isObject())
            fail(name, QStringLiteral("expected an object"));
        result.append(
            JsonMembers(elements.at(i).toObject(), path + name + QLatin1Char('.'), error));
    }
    return result;
}

bool JsonMembers::isNull(QAnyStringView key) const
{
    return valueOf(members, key).isNull();
}

void JsonMembers::fail(QAnyStringView key, const QString &expected) const
{
    if (error->isEmpty())
        *error = path + key.toString() + QLatin1String(": ") + expected;
}

QJsonValue JsonMembers::typed(QAnyStringView key, QJsonValue::Type type, const char *expected) const
{
    auto value = valueOf(members, key);
    if (value.type() != type)
        fail(key, QString::fromLatin1(expected));
    return value;
}
