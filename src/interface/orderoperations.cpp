#include "interface/interface.h"
#include "interface/ordermessage.h"

#include <host/dbqueuebroker.h>

#include <log4qt/logger.h>

#include <QDateTime>

namespace lmmindbox {

namespace {

void putIntoQueue(QLatin1String method, const QJsonObject &payload)
{
    const QJsonObject message = {{ordermessage::method, method}, {ordermessage::payload, payload}};
    Singleton<DBQueueBroker>::instance()->put(ordermessage::queue, message, {});
}

} // namespace

CreateOrderResult Interface::createAuthorizedOrder(const QJsonObject &payload, bool skipQueue)
{
    logger->info(QStringLiteral("Создание заказа авторизованного клиента"));
    CreateOrderResult result =
        sendRequest(QStringLiteral("Offline.CreateAuthorizedOrder"), payload, {});
    if (result.noConnection && !skipQueue) {
        logger->info(QStringLiteral("Отправка сообщения создания заказа в очередь"));
        auto dated = payload;
        dated.insert(
            QLatin1String("executionDateTimeUtc"),
            QDateTime::currentDateTimeUtc().toString(QStringLiteral("dd.MM.yyyy HH:mm:ss")));
        putIntoQueue(ordermessage::create, dated);
    }
    return result;
}

OperationResult Interface::changeOrderStatus(const QJsonObject &payload, bool skipQueue)
{
    if (skipQueue) {
        logger->info(QStringLiteral("Изменение статуса заказа"));
        return sendRequest(QStringLiteral("Offline.ChangeStatus"), payload, {});
    }
    logger->info(QStringLiteral("Отправка сообщения подтверждения заказа в очередь"));
    putIntoQueue(ordermessage::change, payload);
    return {};
}

} // namespace lmmindbox
