#include "model/order.h"

#include "model/jsonpath.h"

#include <host/config.h>

#include <QJsonArray>

namespace lmmindbox {

Order::Order(const QJsonObject &object)
{
    const auto wrapped = object.constFind(QLatin1String("order"));
    data = wrapped == object.constEnd() ? object : wrapped->toObject();

    const auto idName =
        Singleton<Config>::instance()->getText(QStringLiteral("Mindbox:responseTransactionIdName"),
                                               QStringLiteral("offlineTransactionIdVantor"));
    const auto path = QStringLiteral("ids.%1").arg(idName).split(QLatin1Char('.'));
    transactionId = getJsonValueByPath(object, path).toString();
}

bool Order::isEmpty() const
{
    return data.value(QLatin1String("lines")).toArray().isEmpty();
}

} // namespace lmmindbox
