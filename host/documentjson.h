#pragma once

#include "host/export.h"

#include <QJsonObject>
#include <QSharedPointer>
#include <QString>

#include <tl/expected.hpp>

class AbstractDocument;

/// The JSON form of saved receipts.
namespace documentjson {

/// The whole receipt. A sum, price or quantity that is not finite cannot be read back.
HOST_EXPORT QJsonObject toJson(const AbstractDocument &document);
/// The receipt without its member "positions".
HOST_EXPORT QJsonObject headToJson(const AbstractDocument &document);
/// An element of "positions"; empty when the receipt has no position with that number.
HOST_EXPORT QJsonObject positionToJson(const AbstractDocument &document, int posnum);

/// Reads a receipt that `toJson` wrote.
/// \return Never null. The error says what was expected of any other object.
[[nodiscard]] HOST_EXPORT tl::expected<QSharedPointer<AbstractDocument>, QString>
fromJson(const QJsonObject &object);

} // namespace documentjson
