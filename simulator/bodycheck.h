#pragma once

#include <QJsonArray>
#include <QJsonObject>

namespace simulator {

/// Checks a body against the shape of that name in bodies.json: nothing missing, mistyped or
/// unknown. Returns a validation message for each fault, at most 20; empty when the body is right.
QJsonArray checkBody(const QJsonObject &body, const QString &shape);

} // namespace simulator
