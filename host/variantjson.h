#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QString>
#include <QVariant>

/// Values in JSON without loss: {"type": ..., "value": ...}, so that a whole number comes back as
/// one, a date as a date, a JSON object as a JSON object.
namespace variantjson {

/// Sets `error` for a type that cannot be kept, and for a number that is not finite.
QJsonObject toJson(const QVariant &value, QString &error);
/// Sets `error` when the object is not one of `toJson`'s.
QVariant fromJson(const QJsonObject &object, QString &error);

/// ISO text with the offset from UTC that was in force; "Z" marks a UTC time. Null for an invalid
/// time. Sets `error` for a time that is neither local nor UTC.
QJsonValue dateTimeToJson(const QDateTime &time, QString &error);
/// The same time of day even when the till's time zone has changed since.
QDateTime dateTimeFromJson(const QJsonValue &value, QString &error);

/// ISO text; null for an invalid date.
QJsonValue dateToJson(QDate date);
QDate dateFromJson(const QJsonValue &value, QString &error);

} // namespace variantjson
