#pragma once

#include <QJsonObject>
#include <QString>
#include <QVariant>

/// Values in JSON without loss: {"type": ..., "value": ...}, so that a whole number comes back as
/// one, a date as a date, a JSON object as a JSON object.
namespace variantjson {

/// Nothing, texts, truth values, numbers, dates, JSON objects and arrays, and maps of all these.
/// In place of any other value, or of a number that is not finite, stands nothing, and `error`
/// tells why.
QJsonObject toJson(const QVariant &value, QString &error);

/// What `toJson` made the object of. Of any other object it makes something that `toJson` would
/// write in another way.
QVariant fromJson(const QJsonObject &object);

} // namespace variantjson
