#pragma once

#include <QJsonValue>
#include <QStringList>

class QJsonObject;

namespace lmmindbox {

/// The value inside `object` at the path `keys`, one key for each level.
///
/// The first value on the path that is no object is returned, even when keys remain; a missing
/// member reads as null. An object is never returned: null when the path ends on one, or is empty.
QJsonValue getJsonValueByPath(const QJsonObject &object, const QStringList &keys);

} // namespace lmmindbox
