#include "support.h"

#include <host/database.h>
#include <host/dbqueuebroker.h>

#include <QElapsedTimer>

#include <array>
#include <thread>
#include <vector>

namespace {

const auto queueName = QStringLiteral("lmmindbox");

QJsonObject message(int number)
{
    return {{QStringLiteral("number"), number}, {QStringLiteral("text"), QStringLiteral("имя")}};
}

QList<int> numbers(const QList<QueuedMessage> &messages)
{
    QList<int> result;
    for (const auto &queued : messages)
        result += queued.message.value(QStringLiteral("number")).toInt();
    return result;
}

class Queue : public WithFiles
{
protected:
    QString file() const { return path(QStringLiteral("data/queue.sqlite")); }
};

} // namespace

TEST_F(Queue, KeepsMessagesInOrderForTheNextBroker)
{
    {
        DBQueueBroker broker(file());
        for (const auto number : {1, 2, 3, 4})
            ASSERT_TRUE(broker.put(queueName, message(number), {}))
                << broker.lastError().toStdString();
        ASSERT_TRUE(broker.put(QStringLiteral("other"), message(9), QStringLiteral("tag")));
        for (const auto *suffix : {"", "-wal", "-shm"})
            EXPECT_EQ(mode(file() + QLatin1String(suffix)), 0600U);
        EXPECT_EQ(mode(path(QStringLiteral("data"))), 0700U);
    }
    DBQueueBroker broker(file());
    const auto first = broker.first(queueName);
    ASSERT_TRUE(first);
    EXPECT_EQ(first->message, message(1));
    EXPECT_LE(std::abs(first->queuedAt.secsTo(QDateTime::currentDateTimeUtc())), 60);
    EXPECT_EQ(numbers(broker.waiting(queueName, 3)), (QList{1, 2, 3}));
    EXPECT_EQ(broker.first(QStringLiteral("other"))->tag, QStringLiteral("tag"));

    EXPECT_TRUE(broker.remove(first->id));
    EXPECT_FALSE(broker.remove(first->id));
    EXPECT_FALSE(broker.lastError().isEmpty());
    EXPECT_EQ(numbers(broker.waiting(queueName, 9)), (QList{2, 3, 4}));

    // Whoever still holds the number of a removed message must not meet another one.
    const auto last = broker.first(QStringLiteral("other"))->id;
    ASSERT_TRUE(broker.remove(last) && broker.put(queueName, message(5), {}));
    EXPECT_GT(broker.waiting(queueName, 9).constLast().id, last);
}

TEST_F(Queue, ParkedMessageMakesWayAndComesBackToItsPlace)
{
    DBQueueBroker broker(file());
    for (const auto number : {1, 2, 3})
        ASSERT_TRUE(broker.put(queueName, message(number), {}));
    const auto id = broker.first(queueName)->id;
    EXPECT_TRUE(broker.noteFailure(id, QStringLiteral("no connection"), 0));
    EXPECT_EQ(broker.first(queueName)->tries, 1);
    EXPECT_EQ(broker.first(queueName)->lastError, QStringLiteral("no connection"));

    EXPECT_TRUE(broker.park(id, QStringLiteral("refused")));
    EXPECT_EQ(numbers(broker.waiting(queueName, 9)), (QList{2, 3}));
    EXPECT_FALSE(broker.park(id, QStringLiteral("again"))); // keeps the first reason
    ASSERT_EQ(numbers(broker.parked(queueName)), (QList{1}));
    EXPECT_EQ(broker.parked(queueName).constFirst().lastError, QStringLiteral("refused"));
    const auto state = broker.state(queueName);
    ASSERT_TRUE(state && state->oldest);
    EXPECT_EQ(state->waiting, 2);
    EXPECT_EQ(state->parked, 1);
    EXPECT_EQ(state->oldest->message, message(2));

    EXPECT_TRUE(broker.unpark(id));
    EXPECT_EQ(numbers(broker.waiting(queueName, 9)), (QList{1, 2, 3}));
    EXPECT_EQ(broker.first(queueName)->tries, 0);
}

TEST_F(Queue, IsSharedByThreadsThatOpenItAtOnce)
{
    std::array<std::thread, 3> threads;
    for (auto &thread : threads) {
        thread = std::thread([this] {
            DBQueueBroker broker(file());
            for (auto number = 0; number < 5; ++number)
                EXPECT_TRUE(broker.put(queueName, message(number), {}))
                    << broker.lastError().toStdString();
        });
    }
    for (auto &thread : threads)
        thread.join();
    EXPECT_EQ(DBQueueBroker(file()).state(queueName)->waiting, 15);
}

TEST_F(Queue, LockedFileFailsInTimeAndServesAgain)
{
    DBQueueBroker broker(file());
    ASSERT_TRUE(broker.put(queueName, message(1), {}));
    {
        Database other(file());
        const Transaction lock(other);
        EXPECT_TRUE(lock.begun());
        QElapsedTimer timer;
        timer.start();
        broker.beginBatch();
        EXPECT_TRUE(broker.put(queueName, message(2), {}));
        EXPECT_FALSE(broker.endBatch());
        EXPECT_LT(timer.elapsed(), 4000);
        EXPECT_TRUE(broker.lastError().contains(file()) &&
                    broker.lastError().contains(QStringLiteral("locked")));
    }
    EXPECT_TRUE(broker.put(queueName, message(3), {}));
    EXPECT_EQ(numbers(broker.waiting(queueName, 9)), (QList{1, 3}));
}

TEST_F(Queue, FullDiskFailsAndServesAgain)
{
    DBQueueBroker broker(file());
    ASSERT_TRUE(broker.put(queueName, message(1), {}));
    const QJsonObject large{{QStringLiteral("text"), QString(200'000, QLatin1Char('x'))}};
    {
        const FullDisk disk(65536);
        broker.beginBatch();
        broker.put(queueName, message(5), {});
        broker.put(queueName, large, {});
        EXPECT_FALSE(broker.endBatch());
    }
    EXPECT_FALSE(broker.lastError().isEmpty());
    EXPECT_TRUE(broker.put(queueName, message(2), {})) << broker.lastError().toStdString();
    EXPECT_EQ(numbers(broker.waiting(queueName, 9)), (QList{1, 2}));
}

TEST_F(Queue, FileOfSomethingElseIsReportedAndLeftAlone)
{
    const auto fileAfter = [this](const char *sql) {
        EXPECT_TRUE(DBQueueBroker(file()).put(queueName, message(1), {}));
        EXPECT_TRUE(Database(file()).write(sql));
        const auto content = read(file());
        EXPECT_TRUE(QFile::remove(file()));
        return content;
    };
    const auto newer = fileAfter("PRAGMA user_version = 9");
    const auto foreign = fileAfter("PRAGMA application_id = 0");
    struct Case
    {
        QByteArray content;
        const char *expected;
    };
    const std::vector<Case> cases{
        {newer, "newer version"},
        {foreign, "something else"},
        {"no database at all, yet longer than a header of one " + QByteArray(100, ' '),
         "not a database"},
        {newer.left(newer.size() / 2), ""},
    };
    for (const auto &[content, expected] : cases) {
        SCOPED_TRACE(expected);
        const auto damaged = write(QStringLiteral("damaged"), content);
        DBQueueBroker broker(damaged);
        EXPECT_FALSE(broker.put(queueName, message(2), {}));
        EXPECT_TRUE(broker.lastError().contains(damaged) &&
                    broker.lastError().contains(QLatin1String(expected)))
            << broker.lastError().toStdString();
        EXPECT_FALSE(broker.state(queueName));
        EXPECT_EQ(read(damaged), content);
    }
    EXPECT_FALSE(DBQueueBroker().put(queueName, message(1), {}));
}
