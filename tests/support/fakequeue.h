#pragma once

#include <host/dbqueuebroker.h>
#include <host/messagesink.h>

#include <QList>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

/// Collects the messages that the plugin queues.
class FakeQueue : private MessageSink
{
public:
    FakeQueue() { Singleton<DBQueueBroker>::instance()->setSink(this); }
    ~FakeQueue() override { Singleton<DBQueueBroker>::instance()->setSink(nullptr); }
    Q_DISABLE_COPY_MOVE(FakeQueue)

    QList<QJsonObject> messages;

private:
    bool put(const QString &queue, const QJsonObject &message, const QString &tag) override
    {
        EXPECT_EQ(queue, u"lmmindbox"_s);
        EXPECT_TRUE(tag.isEmpty());
        messages.append(message);
        return true;
    }
};
