#pragma once

#include <QJsonArray>
#include <QJsonObject>

#include <span>

namespace simulator {

/// What the value of a member must be.
enum class Kind {
    Text,
    FilledText,
    Sex,      ///< "male" or "female".
    Date,     ///< dd.MM.yyyy, not in the future.
    DateTime, ///< dd.MM.yyyy HH:mm:ss.
    Email,    ///< A text with something before an @.
    Discount, ///< The text "discount".
    Number,
    Integer,
    Boolean,
    Identifier, ///< An integer or a text that is not empty.
    Ids,        ///< An object with exactly one member, an identifier.
    Object,
    Array, ///< Of objects.
    Texts, ///< An array of texts.
    Lines  ///< An array of objects whose "lineNumber" counts from 1.
};

enum class Presence { Required, Optional };

/// One member of the object that an operation expects.
struct Member
{
    QLatin1String name;
    Kind kind;
    Presence presence = Presence::Required;
    std::span<const Member> children = {}; ///< Of the object, or of each object of the array.
};

/// A required member that is an object, or an array of objects, with these members.
constexpr Member nested(QLatin1String name, std::span<const Member> children,
                        Kind kind = Kind::Object)
{
    return {.name = name, .kind = kind, .children = children};
}

/// Checks a body member by member: nothing missing, mistyped or unknown.
/// Returns a validation message for each fault, at most 20; empty when the body is right.
QJsonArray checkBody(const QJsonObject &body, std::span<const Member> members);

} // namespace simulator
