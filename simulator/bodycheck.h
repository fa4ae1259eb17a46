#pragma once

#include <QJsonArray>
#include <QJsonObject>

namespace simulator {

/// Checks a body against the shape of that name in bodies.json: nothing missing, mistyped or
/// unknown. Returns a validation message for each fault, at most 20; empty when the body is right.
///
/// A shape looks like the body: an object has these members, those with a question mark when sent,
/// and an array any number of such elements; a text says what a single value must be, in the words
/// of a message. A "lineNumber" must count the elements of its array from 1.
QJsonArray checkBody(const QJsonObject &body, const QString &shape);

} // namespace simulator
