#pragma once

#include "host/export.h"
#include "host/hostobject.h"

#include <QJsonObject>
#include <QString>

/// Receives the messages that a plugin queues: the till's store, or another host's.
class HOST_EXPORT MessageSink : public HostObject
{
public:
    /// Appends a message to a queue. `tag` is stored with the message and has no meaning here.
    /// \return Whether the message survives a power cut: at once, or together with its receipt.
    virtual bool put(const QString &queue, const QJsonObject &message, const QString &tag) = 0;
};
