#pragma once

#include "host/export.h"

#include <QJsonObject>
#include <QSharedPointer>
#include <QString>

class AbstractDocument;

/// The JSON form in which receipts are kept.
namespace documentjson {

/// The whole receipt. Where a value of the plugin data or the card's number cannot be kept, `error`
/// tells why and nothing stands there; with a sum or quantity that is not finite the receipt cannot
/// be read back.
HOST_EXPORT QJsonObject toJson(const AbstractDocument &document, QString &error);

/// The receipt that `toJson` made the object of.
/// \return Null, with the member and what was expected in `error`, for any other object.
HOST_EXPORT QSharedPointer<AbstractDocument> fromJson(const QJsonObject &object, QString &error);

} // namespace documentjson
