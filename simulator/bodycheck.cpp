#include "simulator/bodycheck.h"

#include "simulator/answer.h"

#include <QDate>
#include <QDateTime>

#include <algorithm>
#include <cmath>

namespace simulator {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qsizetype maximumMessages = 20;

/// Where a value stands, as a chain on the stack: a text is made of it only for a message.
struct Location
{
    QString text() const
    {
        const auto own = index < 0 ? QString(name) : QStringLiteral("%1[%2]").arg(name).arg(index);
        return parent && !parent->name.isEmpty() ? parent->text() + u'.' + own : own;
    }

    const Location *parent = nullptr;
    QLatin1String name;
    qsizetype index = -1;
};

bool isInteger(const QJsonValue &value)
{
    return value.isDouble() && std::trunc(value.toDouble()) == value.toDouble();
}

bool isIdentifier(const QJsonValue &value)
{
    return isInteger(value) || !value.toString().isEmpty();
}

bool isPastDate(const QString &text)
{
    const auto date = QDate::fromString(text, QStringLiteral("dd.MM.yyyy"));
    return date.isValid() && date <= QDate::currentDate();
}

bool isSingleId(const QJsonObject &ids)
{
    return ids.size() == 1 && !ids.begin().key().isEmpty() && isIdentifier(*ids.begin());
}

bool isTextArray(const QJsonValue &value)
{
    const auto array = value.toArray();
    return value.isArray() && std::all_of(array.begin(), array.end(),
                                          [](const QJsonValue &text) { return text.isString(); });
}

bool hasKind(const QJsonValue &value, Kind kind)
{
    switch (kind) {
    case Kind::Text:
        return value.isString();
    case Kind::FilledText:
        return !value.toString().isEmpty();
    case Kind::Sex:
        return value == "male"_L1 || value == "female"_L1;
    case Kind::Date:
        return isPastDate(value.toString());
    case Kind::DateTime:
        return QDateTime::fromString(value.toString(), QStringLiteral("dd.MM.yyyy HH:mm:ss"))
            .isValid();
    case Kind::Email:
        return value.toString().indexOf(u'@') > 0;
    case Kind::Discount:
        return value == "discount"_L1;
    case Kind::Number:
        return value.isDouble();
    case Kind::Integer:
        return isInteger(value);
    case Kind::Boolean:
        return value.isBool();
    case Kind::Identifier:
        return isIdentifier(value);
    case Kind::Ids:
        return isSingleId(value.toObject());
    case Kind::Object:
        return value.isObject();
    case Kind::Texts:
        return isTextArray(value);
    case Kind::Array:
    case Kind::Lines:
        return value.isArray();
    }
    return false;
}

QLatin1String expectation(Kind kind)
{
    switch (kind) {
    case Kind::Text:
        return "must be a text"_L1;
    case Kind::FilledText:
        return "must be a text that is not empty"_L1;
    case Kind::Sex:
        return R"(must be "male" or "female")"_L1;
    case Kind::Date:
        return "must be a date that is past, dd.MM.yyyy"_L1;
    case Kind::DateTime:
        return "must be a time, dd.MM.yyyy HH:mm:ss"_L1;
    case Kind::Email:
        return "must be an e-mail address"_L1;
    case Kind::Discount:
        return R"(must be "discount")"_L1;
    case Kind::Number:
        return "must be a number"_L1;
    case Kind::Integer:
        return "must be an integer"_L1;
    case Kind::Boolean:
        return "must be true or false"_L1;
    case Kind::Identifier:
        return "must be an integer or a text that is not empty"_L1;
    case Kind::Ids:
        return "must be an object with exactly one identifier"_L1;
    case Kind::Object:
        return "must be an object"_L1;
    case Kind::Texts:
        return "must be an array of texts"_L1;
    case Kind::Array:
    case Kind::Lines:
        return "must be an array of objects"_L1;
    }
    return {};
}

class BodyCheck
{
public:
    void checkObject(const QJsonObject &object, const Location &at, std::span<const Member> members)
    {
        qsizetype known = 0;
        for (const auto &member : members) {
            const auto value = object.constFind(member.name);
            if (value != object.constEnd()) {
                ++known;
                checkValue(*value, {&at, member.name}, member);
            } else if (member.presence == Presence::Required) {
                report({&at, member.name}, "is missing"_L1);
            }
        }
        if (known != object.size())
            reportUnknown(object, at, members);
    }

    QJsonArray messages;

private:
    void checkValue(const QJsonValue &value, const Location &at, const Member &member)
    {
        if (!hasKind(value, member.kind))
            report(at, expectation(member.kind));
        else if (member.kind == Kind::Object)
            checkObject(value.toObject(), at, member.children);
        else if (member.kind == Kind::Array || member.kind == Kind::Lines)
            checkArray(value.toArray(), at, member);
    }

    void checkArray(const QJsonArray &array, const Location &at, const Member &member)
    {
        for (qsizetype i = 0; i < array.size() && messages.size() < maximumMessages; ++i) {
            const Location place{at.parent, at.name, i};
            const auto element = array.at(i);
            if (!element.isObject()) {
                report(place, expectation(Kind::Object));
                continue;
            }
            const auto object = element.toObject();
            checkObject(object, place, member.children);
            if (member.kind == Kind::Lines && object.value("lineNumber"_L1).toInteger() != i + 1)
                report({&place, "lineNumber"_L1}, QStringLiteral("must be %1").arg(i + 1));
        }
    }

    void reportUnknown(const QJsonObject &object, const Location &at,
                       std::span<const Member> members)
    {
        for (const auto &name : object.keys()) {
            const auto expected = [&name](const Member &member) { return member.name == name; };
            if (std::none_of(members.begin(), members.end(), expected))
                report(at, QStringLiteral("has the unknown member '%1'").arg(name.left(100)));
        }
    }

    void report(const Location &at, const QString &message)
    {
        if (messages.size() < maximumMessages)
            messages.append(validationMessage(message, at.text()));
    }
};

} // namespace

QJsonArray checkBody(const QJsonObject &body, std::span<const Member> members)
{
    BodyCheck check;
    check.checkObject(body, {}, members);
    return check.messages;
}

} // namespace simulator
