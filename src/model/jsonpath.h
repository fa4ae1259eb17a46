#pragma once

#include <QJsonValue>
#include <QStringList>

class QJsonObject;

namespace lmmindbox {

/// The value that `keys` lead to inside `object`, one key a level.
///
/// The first value on the way that is no object ends the walk and is returned, even when keys
/// remain; a missing member reads as null. Null for no keys, and where the path ends on an object:
/// an object is never returned.
QJsonValue getJsonValueByPath(const QJsonObject &object, const QStringList &keys);

} // namespace lmmindbox
