#include "fakes.h"
#include "tests/support/timezone.h"

namespace lmmindbox {
namespace {

const auto queueName = u"lmmindbox"_s;

class OrderOperations : public testing::Test
{
protected:
    OrderOperations() { broker->setFile(directory.filePath(u"queue.db"_s)); }
    ~OrderOperations() override { broker->setFile({}); }

    QList<QJsonObject> queued()
    {
        QList<QJsonObject> messages;
        for (const auto &message : broker->waiting(queueName, 10)) {
            messages.append(message.message);
            EXPECT_TRUE(message.tag.isEmpty());
        }
        return messages;
    }

    QTemporaryDir directory;
    DBQueueBroker *broker = Singleton<DBQueueBroker>::instance();
    FakeRestClient http;
    RecordingInterface client;
    LogCapture log{"lmmindbox"};
    const QJsonObject payload = {{u"order"_s, u"7"_s}};
};

TEST_F(OrderOperations, UnreachableServiceQueuesTheDatedCreationThenTheStatus)
{
    http.httpCode = 0;
    // Far from UTC, so that local time would show.
    const TimeZone zone("Asia/Kamchatka");
    const auto before = QDateTime::currentDateTimeUtc();
    EXPECT_TRUE(client.createAuthorizedOrder(payload, false).noConnection);
    EXPECT_EQ(client.sent, std::tuple(u"Offline.CreateAuthorizedOrder"_s, payload, QString()));
    const auto status = client.changeOrderStatus(payload, false);
    EXPECT_EQ(status.status, OperationStatus::Undefined);
    EXPECT_FALSE(status.noConnection);
    EXPECT_EQ(http.requests, 1);
    EXPECT_EQ(LogCapture::take().filter(u"I "_s),
              QStringList({u"I Создание заказа авторизованного клиента"_s,
                           u"I Отправка сообщения создания заказа в очередь"_s,
                           u"I Отправка сообщения подтверждения заказа в очередь"_s}));

    auto messages = queued();
    ASSERT_EQ(messages.size(), 2);
    auto dated = messages[0]["payload"_L1].toObject();
    // Read with its zone: as local time the hour that summer time skips would not be valid.
    const auto time = QDateTime::fromString(
        dated.take("executionDateTimeUtc"_L1).toString() + " UTC"_L1, u"dd.MM.yyyy HH:mm:ss t"_s);
    ASSERT_TRUE(time.isValid());
    EXPECT_GE(time, before.addSecs(-1)); // the text has no milliseconds
    EXPECT_LE(time, QDateTime::currentDateTimeUtc());
    EXPECT_EQ(dated, payload);
    messages[0].insert("payload"_L1, dated);
    EXPECT_EQ(messages[0], QJsonObject({{u"method"_s, u"create"_s}, {u"payload"_s, payload}}));
    EXPECT_EQ(messages[1], QJsonObject({{u"method"_s, u"change"_s}, {u"payload"_s, payload}}));
}

TEST_F(OrderOperations, AnythingButALostConnectionLeavesTheQueueEmpty)
{
    const struct
    {
        int httpCode;
        const char *answer;
        bool success;
    } cases[] = {
        {200, R"({"order": {"processingStatus": "Processed"}})", true},
        {200, "", false},
        {500, R"({"status": "Success", "errorMessage": "x"})", false},
        {400, R"({"status": "ValidationError"})", false},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.answer);
        http.httpCode = c.httpCode;
        http.answer = c.answer;
        EXPECT_EQ(client.createAuthorizedOrder(payload, false).success(), c.success);
    }
    http.httpCode = 0;
    http.answer.clear();
    EXPECT_TRUE(client.createAuthorizedOrder(payload, true).noConnection);
    EXPECT_TRUE(client.changeOrderStatus(payload, true).noConnection);
    EXPECT_TRUE(LogCapture::take().contains(u"I Изменение статуса заказа"_s));
    EXPECT_EQ(client.sent, std::tuple(u"Offline.ChangeStatus"_s, payload, QString()));
    EXPECT_TRUE(queued().isEmpty());
}

} // namespace
} // namespace lmmindbox
