#include "model/jsonpath.h"

#include <QJsonObject>

namespace lmmindbox {

QJsonValue getJsonValueByPath(const QJsonObject &object, const QStringList &keys)
{
    auto current = object;
    for (const auto &key : keys) {
        const auto member = current.constFind(key);
        if (member == current.constEnd())
            return QJsonValue::Null;
        if (!member->isObject())
            return *member;
        current = member->toObject();
    }
    return QJsonValue::Null;
}

} // namespace lmmindbox
