#pragma once

#include <QJsonArray>
#include <QJsonObject>

#include <span>

namespace simulator {

/// What the value of a member must be.
struct Kind
{
    QLatin1String expectation; ///< Such as "must be a text".
    bool (*holds)(const QJsonValue &value);
};

namespace kinds {

extern const Kind text, filledText, number, integer, boolean, object, objects;
extern const Kind sex;         ///< "male" or "female".
extern const Kind date;        ///< dd.MM.yyyy, not in the future.
extern const Kind dateTime;    ///< dd.MM.yyyy HH:mm:ss, in UTC.
extern const Kind email;       ///< A text with something before an @.
extern const Kind discount;    ///< The text "discount".
extern const Kind identifier;  ///< An integer or a text that is not empty.
extern const Kind ids;         ///< An object with exactly one member, an identifier.
extern const Kind lines;       ///< Objects whose "lineNumber" counts from 1.
extern const Kind probability; ///< A number from 0 to 1.

} // namespace kinds

enum class Presence { Required, Optional };

/// One member of the object that an operation expects.
struct Member
{
    QLatin1String name;
    const Kind &kind;
    Presence presence = Presence::Required;
    /// Of the object, or of each object of the array; none when anything may stand in it.
    std::span<const Member> children = {};
};

/// A required member that is an object, or an array of objects, with these members.
constexpr Member nested(QLatin1String name, std::span<const Member> children,
                        const Kind &kind = kinds::object)
{
    return {.name = name, .kind = kind, .children = children};
}

/// Checks a body member by member: nothing missing, mistyped or unknown.
/// Returns a validation message for each fault, at most 20; empty when the body is right.
QJsonArray checkBody(const QJsonObject &body, std::span<const Member> members);

} // namespace simulator
