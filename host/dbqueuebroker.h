#pragma once

#include "host/export.h"
#include "host/singleton.h"

#include <QJsonObject>
#include <QString>

class MessageSink;

/// The host's persistent queues as a plugin uses them.
///
/// The host sets the receiver of the messages with `setSink`:
///
///     Singleton<DBQueueBroker>::instance()->setSink(&sink);
///     system.commit(receipt);                               // the plugin queues its messages
///     Singleton<DBQueueBroker>::instance()->setSink(nullptr);
class HOST_EXPORT DBQueueBroker
{
public:
    /// Appends a message to a queue. \return Whether the host stores it; false without a sink.
    bool put(const QString &queue, const QJsonObject &message, const QString &tag);
    /// Null removes the sink. It is not owned and must live until then.
    void setSink(MessageSink *newSink) { sink = newSink; }

private:
    MessageSink *sink = nullptr;
};

extern template class HOST_EXPORT Singleton<DBQueueBroker>;
