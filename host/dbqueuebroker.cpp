#include "host/dbqueuebroker.h"

#include "host/messagesink.h"

template class Singleton<DBQueueBroker>;

bool DBQueueBroker::put(const QString &queue, const QJsonObject &message, const QString &tag)
{
    return sink && sink->put(queue, message, tag);
}
