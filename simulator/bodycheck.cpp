#include "simulator/bodycheck.h"

#include "simulator/presets.h"

#include <QDate>
#include <QHash>
#include <QRegularExpression>

#include <algorithm>

namespace simulator {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype mostMistakes = 20;

const QJsonObject &shapes()
{
    static const auto object = ownJson(u"bodies"_s);
    return object;
}

bool matches(const QString &kind, const QJsonValue &value)
{
    static const auto patterns = [] {
        QHash<QString, QRegularExpression> compiled;
        const auto texts = shapes()["kinds"_L1].toObject();
        for (auto text = texts.begin(); text != texts.end(); ++text)
            compiled.insert(text.key(), QRegularExpression(text->toString()));
        return compiled;
    }();
    const auto known = patterns.constFind(kind);
    if (known == patterns.constEnd())
        qFatal("bodies.json: unknown kind: %s", qPrintable(kind));
    return known->match(value.isString() ? u'"' + value.toString() : value.toVariant().toString())
        .hasMatch();
}

bool isHeaders(const QJsonObject &headers)
{
    static const QRegularExpression field(uR"(\A[!#$%&'*+.^_`|~0-9A-Za-z-]+:[^\r\n]*\z)"_s);
    return std::ranges::all_of(headers.keys(), [&](const QString &name) {
        const auto text = headers[name];
        return text.isString() && field.match(name + u':' + text.toString()).hasMatch();
    });
}

bool isOneIdentifier(const QJsonObject &ids)
{
    return ids.size() == 1 && !ids.begin().key().isEmpty() &&
           matches(u"an identifier"_s, *ids.begin());
}

/// The date at the beginning of a text, in the form that the kind names.
bool isDate(const QString &text, const QString &kind)
{
    const auto form = kind.section(u", "_s, 1).section(u' ', 0, 0);
    const auto date = QDate::fromString(text.section(u' ', 0, 0), form);
    return date.isValid() && (!kind.contains("past"_L1) || date <= QDate::currentDate());
}

bool isOf(const QString &kind, const QJsonValue &value)
{
    if (!matches(kind, value))
        return false;
    if (kind.startsWith("an array"_L1))
        return value.isArray();
    if (kind.startsWith("an object"_L1))
        return value.isObject() && (!kind.endsWith("texts"_L1) || isHeaders(value.toObject())) &&
               (!kind.endsWith("identifier"_L1) || isOneIdentifier(value.toObject()));
    if (kind.startsWith("one of the "_L1))
        return isDescribed(kind.section(u' ', -1), value.toString());
    return !kind.contains(" date"_L1) || isDate(value.toString(), kind);
}

QString kindOf(const QJsonValue &shape)
{
    if (shape.isArray())
        return u"an array"_s;
    return shape.isObject() ? u"an object"_s : shape.toString();
}

/// Adds what is wrong inside a value.
void add(QJsonArray &mistakes, const QString &place, const QJsonArray &inside)
{
    for (const auto mistake : inside) {
        const auto inner = mistake["location"_L1].toString();
        const bool isMember = !inner.isEmpty() && !inner.startsWith(u'[');
        mistakes.append(QJsonObject{{"message"_L1, mistake["message"_L1]},
                                    {"location"_L1, place + (isMember ? u"."_s : u""_s) + inner}});
    }
}

QJsonArray mistake(const QString &message)
{
    return {QJsonObject{{"message"_L1, message}}};
}

QJsonArray check(const QJsonValue &value, const QJsonValue &shape, qsizetype index = -1);

QJsonArray checkObject(const QJsonObject &object, const QJsonObject &shape, qsizetype index)
{
    QJsonArray mistakes;
    auto unknown = object.keys();
    for (auto member = shape.begin(); member != shape.end(); ++member) {
        const bool isOptional = member.key().endsWith(u'?');
        const auto name = member.key().chopped(isOptional ? 1 : 0);
        const auto value = object.value(name);
        if (unknown.removeOne(name))
            add(mistakes, name, check(value, *member));
        else if (!isOptional)
            add(mistakes, name, mistake(u"is missing"_s));
        if (name == "lineNumber"_L1 && value.toInteger(index + 1) != index + 1)
            add(mistakes, name, mistake(u"must be %1"_s.arg(index + 1)));
    }
    for (const auto &name : unknown)
        add(mistakes, name.left(100), mistake(u"is unknown"_s));
    return mistakes;
}

/// `index` is the value's place in its array.
QJsonArray check(const QJsonValue &value, const QJsonValue &shape, qsizetype index)
{
    const auto kind = kindOf(shape);
    if (!isOf(kind, value))
        return mistake(u"must be "_s + kind);
    if (shape.isObject())
        return checkObject(value.toObject(), shape.toObject(), index);
    QJsonArray mistakes;
    const auto array = shape.isArray() ? value.toArray() : QJsonArray();
    for (qsizetype i = 0; i < array.size() && mistakes.size() < mostMistakes; ++i)
        add(mistakes, u"[%1]"_s.arg(i), check(array[i], shape[0], i));
    return mistakes;
}

} // namespace

QJsonArray checkBody(const QJsonObject &body, const QString &group, const QString &shape)
{
    const auto common = shapes()["every one of"_L1][group].toObject();
    return check(body, merged(common, shapes()[group][shape].toObject()));
}

bool isDescribed(const QString &group, const QString &shape)
{
    return shapes()[group][shape].isObject();
}

} // namespace simulator
