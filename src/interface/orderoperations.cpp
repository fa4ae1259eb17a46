#include "interface/interface.h"

#include <host/dbqueuebroker.h>

#include <log4qt/logger.h>

#include <QDateTime>

namespace lmmindbox {

namespace {

void putIntoQueue(const QString &method, const QJsonObject &payload)
{
    Singleton<DBQueueBroker>::instance()->put(QStringLiteral("lmmindbox"),
                                              {
                                                  {QStringLiteral("method"), method},
                                                  {QStringLiteral("payload"), payload},
                                              },
                                              {});
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
        putIntoQueue(QStringLiteral("create"), dated);
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
    putIntoQueue(QStringLiteral("change"), payload);
    return {};
}

} // namespace lmmindbox
