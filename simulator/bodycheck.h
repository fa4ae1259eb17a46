#pragma once

#include <QJsonArray>
#include <QJsonObject>

namespace simulator {

/// Checks a body against a shape of bodies.json, in its group: nothing may be missing, mistyped or
/// unknown. Returns a validation message for each mistake; empty when the body is right. A long
/// array is not read on after 20 mistakes.
///
/// A shape looks like the body. An object lists its members; a question mark makes one optional. An
/// array has one element, the shape of all of them. A text names the kind of a single value in the
/// words of the message; "kinds" has the pattern of its JSON, without the quote at its end. A
/// "lineNumber" must count the elements of its array from 1.
QJsonArray checkBody(const QJsonObject &body, const QString &group, const QString &shape);

/// Whether the group has this shape.
bool isDescribed(const QString &group, const QString &shape);

} // namespace simulator
