#pragma once

#include "host/export.h"

#include <QJsonObject>
#include <QSharedPointer>
#include <QString>

class AbstractDocument;

/// The JSON form in which receipts are kept.
namespace documentjson {

/// The whole receipt. Sets `error` when a value of it cannot be kept.
HOST_EXPORT QJsonObject toJson(const AbstractDocument &document, QString &error);

/// Whether a newer version of this code has made the object, as far as it can be told.
HOST_EXPORT bool isNewer(const QJsonObject &object);

/// The receipt that `toJson` made the object of.
/// \return Null, with the member and what was expected in `error`, for any other object.
HOST_EXPORT QSharedPointer<AbstractDocument> fromJson(const QJsonObject &object, QString &error);

} // namespace documentjson
