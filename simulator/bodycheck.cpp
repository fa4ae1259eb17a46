#include "simulator/bodycheck.h"

#include "simulator/faults.h"

#include <QDate>
#include <QFile>
#include <QHash>
#include <QJsonDocument>

#include <algorithm>
#include <cmath>
#include <vector>

namespace simulator {

using namespace Qt::StringLiterals;

namespace {

using Value = QJsonValue;
using Holds = bool (*)(const Value &value);

constexpr qsizetype maximumMessages = 20;

bool isIdentifier(const Value &value)
{
    return value.isDouble() ? std::trunc(value.toDouble()) == value.toDouble()
                            : !value.toString().isEmpty();
}

bool isOneIdentifier(const Value &value)
{
    const auto ids = value.toObject();
    return ids.size() == 1 && !ids.begin().key().isEmpty() && isIdentifier(*ids.begin());
}

QDate readDate(const QString &text)
{
    return QDate::fromString(text, u"dd.MM.yyyy"_s);
}

bool isPastDate(const Value &value)
{
    const auto date = readDate(value.toString());
    return date.isValid() && date <= QDate::currentDate();
}

/// Date and time are read each for itself: read together they are local time, of which a change
/// of the clocks leaves out an hour.
bool isTime(const Value &value)
{
    const auto text = value.toString();
    return readDate(text.section(u' ', 0, 0)).isValid() &&
           QTime::fromString(text.section(u' ', 1), u"HH:mm:ss"_s).isValid();
}

bool isFaultKind(const Value &value)
{
    return faultKind(value.toString()).has_value();
}

template<qint64 least, qint64 most>
bool isFrom(const Value &value)
{
    const auto number = value.toInteger(least - 1);
    return least <= number && number <= most;
}

/// What values can be, in the words of bodies.json and of the messages.
const QHash<QString, Holds> kinds{
    {u"an object"_s, [](const Value &value) { return value.isObject(); }},
    {u"an array"_s, [](const Value &value) { return value.isArray(); }},
    {u"a text"_s, [](const Value &value) { return value.isString(); }},
    {u"a filled text"_s, [](const Value &value) { return !value.toString().isEmpty(); }},
    {u"a number"_s, [](const Value &value) { return value.isDouble(); }},
    {u"an integer"_s, [](const Value &value) { return value.isDouble() && isIdentifier(value); }},
    {u"true or false"_s, [](const Value &value) { return value.isBool(); }},
    {u"male or female"_s,
     [](const Value &value) { return value == "male"_L1 || value == "female"_L1; }},
    {u"the text discount"_s, [](const Value &value) { return value == "discount"_L1; }},
    {u"a past date, dd.MM.yyyy"_s, isPastDate},
    {u"a time, dd.MM.yyyy HH:mm:ss"_s, isTime},
    {u"an e-mail address"_s, [](const Value &value) { return value.toString().indexOf(u'@') > 0; }},
    {u"an identifier"_s, isIdentifier},
    {u"an object with one identifier"_s, isOneIdentifier},
    {u"a kind of fault"_s, isFaultKind},
    {u"a number from 0 to 1"_s,
     [](const Value &value) { return value.toDouble(-1) >= 0 && value.toDouble() <= 1; }},
    {u"from 0 to 600000"_s, isFrom<0, 600'000>},
    {u"from 0 to 1000000"_s, isFrom<0, 1'000'000>},
    {u"from 0 to 4294967295"_s, isFrom<0, 0xffff'ffff>},
    {u"from 200 to 599"_s, isFrom<200, 599>},
};

/// A value as bodies.json describes it.
struct Shape
{
    QString name; ///< As a member of an object.
    bool isOptional = false;
    QString kind;
    Holds holds = nullptr;
    std::vector<Shape> inside{}; ///< The members of the object, or what the array consists of.
};

QString kindOf(const Value &described)
{
    if (described.isArray())
        return u"an array"_s;
    return described.isObject() ? u"an object"_s : described.toString();
}

Shape readShape(const QString &name, const Value &described)
{
    const bool isOptional = name.endsWith(u'?');
    Shape shape{.name = name.chopped(isOptional ? 1 : 0),
                .isOptional = isOptional,
                .kind = kindOf(described)};
    shape.holds = kinds.value(shape.kind);
    if (!shape.holds)
        qFatal("bodies.json: %s cannot be %s", qPrintable(name), qPrintable(shape.kind));
    for (const auto element : described.toArray())
        shape.inside.push_back(readShape({}, element));
    const auto members = described.toObject();
    for (auto member = members.begin(); member != members.end(); ++member)
        shape.inside.push_back(readShape(member.key(), *member));
    return shape;
}

Shape readBodies()
{
    QFile file(u":/simulator/bodies.json"_s);
    const auto text = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    return readShape({}, QJsonDocument::fromJson(text).object());
}

/// Where a value stands. It is told only of a fault: most bodies are right, and some are long.
struct Place
{
    const Place *outer = nullptr;
    QString name{};       ///< In an object.
    qsizetype index = -1; ///< In an array.

    QString text() const
    {
        if (!outer)
            return {};
        if (index >= 0)
            return outer->text() + u"[%1]"_s.arg(index);
        const auto before = outer->text();
        return before.isEmpty() ? name : before + u'.' + name;
    }
};

/// Holds one body against its shape.
class Check
{
public:
    QJsonArray messages;

    void check(const Value &value, const Shape &shape, const Place &place)
    {
        if (!shape.holds(value))
            complain(place, u"must be "_s + shape.kind);
        else if (shape.inside.empty())
            return;
        else if (value.isArray())
            checkArray(value.toArray(), shape.inside.front(), place);
        else
            checkObject(value.toObject(), shape.inside, place);
    }

private:
    void checkArray(const QJsonArray &array, const Shape &element, const Place &place)
    {
        for (qsizetype i = 0; i < array.size() && messages.size() < maximumMessages; ++i)
            check(array[i], element, {.outer = &place, .index = i});
    }

    void checkObject(const QJsonObject &object, const std::vector<Shape> &members,
                     const Place &place)
    {
        qsizetype known = 0;
        for (const auto &member : members) {
            const Place inside{.outer = &place, .name = member.name};
            if (const auto value = object.constFind(member.name); value != object.constEnd()) {
                ++known;
                check(*value, member, inside);
                if (member.name == "lineNumber"_L1 && value->toInteger() != place.index + 1)
                    complain(inside, u"must be %1"_s.arg(place.index + 1));
            } else if (!member.isOptional) {
                complain(inside, u"is missing"_s);
            }
        }
        for (const auto &name : known == object.size() ? QStringList() : object.keys()) {
            if (std::ranges::find(members, name, &Shape::name) == members.end())
                complain(place, u"has the unknown member '%1'"_s.arg(name.left(100)));
        }
    }

    void complain(const Place &place, const QString &message)
    {
        if (messages.size() < maximumMessages)
            messages.append(QJsonObject{{"message"_L1, message}, {"location"_L1, place.text()}});
    }
};

} // namespace

QJsonArray checkBody(const QJsonObject &body, const QString &shape)
{
    static const auto bodies = readBodies();
    const auto found = std::ranges::find(bodies.inside, shape, &Shape::name);
    if (found == bodies.inside.end())
        qFatal("bodies.json does not describe %s", qPrintable(shape));
    Check check;
    check.check(body, *found, {});
    return check.messages;
}

} // namespace simulator
