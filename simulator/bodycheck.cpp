#include "simulator/bodycheck.h"

#include "simulator/answer.h"

#include <QDate>
#include <QTime>

#include <algorithm>
#include <cmath>

namespace simulator {

using namespace Qt::StringLiterals;

namespace kinds {

using Value = QJsonValue;

const Kind text{"must be a text"_L1, [](const Value &value) { return value.isString(); }};
const Kind filledText{"must be a text that is not empty"_L1,
                      [](const Value &value) { return !value.toString().isEmpty(); }};
const Kind number{"must be a number"_L1, [](const Value &value) { return value.isDouble(); }};
const Kind integer{"must be an integer"_L1, [](const Value &value) {
                       return value.isDouble() && std::trunc(value.toDouble()) == value.toDouble();
                   }};
const Kind boolean{"must be true or false"_L1, [](const Value &value) { return value.isBool(); }};
const Kind object{"must be an object"_L1, [](const Value &value) { return value.isObject(); }};
const Kind objects{"must be an array of objects"_L1,
                   [](const Value &value) { return value.isArray(); }};
const Kind sex{R"(must be "male" or "female")"_L1,
               [](const Value &value) { return value == "male"_L1 || value == "female"_L1; }};
const Kind date{"must be a date that is past, dd.MM.yyyy"_L1, [](const Value &value) {
                    const auto date = QDate::fromString(value.toString(), u"dd.MM.yyyy"_s);
                    return date.isValid() && date <= QDate::currentDate();
                }};
// Date and time are read each for itself: read together they are local time, of which a change
// of the clocks leaves out an hour.
const Kind dateTime{"must be a time, dd.MM.yyyy HH:mm:ss"_L1, [](const Value &value) {
                        const auto text = value.toString();
                        const auto day = text.section(u' ', 0, 0);
                        const auto time = text.section(u' ', 1);
                        return QDate::fromString(day, u"dd.MM.yyyy"_s).isValid() &&
                               QTime::fromString(time, u"HH:mm:ss"_s).isValid();
                    }};
const Kind email{"must be an e-mail address"_L1,
                 [](const Value &value) { return value.toString().indexOf(u'@') > 0; }};
const Kind discount{R"(must be "discount")"_L1,
                    [](const Value &value) { return value == "discount"_L1; }};
const Kind identifier{"must be an integer or a text that is not empty"_L1, [](const Value &value) {
                          return integer.holds(value) || filledText.holds(value);
                      }};
const Kind ids{"must be an object with exactly one identifier"_L1, [](const Value &value) {
                   const auto ids = value.toObject();
                   return ids.size() == 1 && !ids.begin().key().isEmpty() &&
                          identifier.holds(*ids.begin());
               }};
const Kind lines = objects;
const Kind probability{"must be a number from 0 to 1"_L1, [](const Value &value) {
                           return value.isDouble() && value.toDouble() >= 0 &&
                                  value.toDouble() <= 1;
                       }};

} // namespace kinds

namespace {

constexpr qsizetype maximumMessages = 20;

struct Finding
{
    QString location;
    QString message;
};
using Findings = QList<Finding>;

/// Says of findings inside a value where the value itself stands. Texts are made only of these:
/// most bodies are right, and some are long.
Findings at(const QString &place, Findings findings)
{
    for (auto &finding : findings) {
        const bool goesOn = !finding.location.isEmpty() && !finding.location.startsWith(u'[');
        finding.location = place + (goesOn ? u"."_s : QString()) + finding.location;
    }
    return findings;
}

Findings checkObject(const QJsonObject &object, std::span<const Member> members);

Findings checkArray(const QJsonArray &array, const Member &member)
{
    Findings found;
    for (qsizetype i = 0; i < array.size() && found.size() < maximumMessages; ++i) {
        auto inside = array[i].isObject() ? checkObject(array[i].toObject(), member.children)
                                          : Findings{{{}, kinds::object.expectation}};
        if (&member.kind == &kinds::lines && array[i]["lineNumber"_L1].toInteger() != i + 1)
            inside.append({u"lineNumber"_s, u"must be %1"_s.arg(i + 1)});
        if (!inside.isEmpty())
            found += at(u"[%1]"_s.arg(i), inside);
    }
    return found;
}

Findings checkValue(const QJsonValue &value, const Member &member)
{
    if (!member.kind.holds(value))
        return {{{}, member.kind.expectation}};
    if (member.children.empty())
        return {};
    return value.isArray() ? checkArray(value.toArray(), member)
                           : checkObject(value.toObject(), member.children);
}

Findings checkObject(const QJsonObject &object, std::span<const Member> members)
{
    Findings found;
    qsizetype known = 0;
    for (const auto &member : members) {
        if (const auto value = object.constFind(member.name); value != object.constEnd()) {
            ++known;
            if (const auto inside = checkValue(*value, member); !inside.isEmpty())
                found += at(member.name, inside);
        } else if (member.presence == Presence::Required) {
            found.append({member.name, u"is missing"_s});
        }
    }
    for (const auto &name : known == object.size() ? QStringList() : object.keys()) {
        const auto isName = [&name](const Member &member) { return member.name == name; };
        if (std::none_of(members.begin(), members.end(), isName))
            found.append({{}, u"has the unknown member '%1'"_s.arg(name.left(100))});
    }
    return found;
}

} // namespace

QJsonArray checkBody(const QJsonObject &body, std::span<const Member> members)
{
    QJsonArray messages;
    for (const auto &[location, message] : checkObject(body, members).mid(0, maximumMessages))
        messages.append(validationMessage(message, location));
    return messages;
}

} // namespace simulator
