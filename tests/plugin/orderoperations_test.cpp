#include "fakes.h"

namespace lmmindbox {
namespace {

const auto queueName = QStringLiteral("lmmindbox");

class OrderOperations : public testing::Test
{
protected:
    OrderOperations() { broker->setFile(directory.filePath(QStringLiteral("queue.db"))); }
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
    const QJsonObject payload = {{QStringLiteral("order"), QStringLiteral("7")}};
};

TEST_F(OrderOperations, UnreachableServiceQueuesTheDatedCreationThenTheStatus)
{
    http.httpCode = 0;
    // Far from UTC, so that local time would show.
    const auto zone = qgetenv("TZ");
    const auto restoreZone =
        qScopeGuard([&zone] { zone.isNull() ? qunsetenv("TZ") : qputenv("TZ", zone); });
    qputenv("TZ", "Asia/Kamchatka");
    const auto before = QDateTime::currentDateTimeUtc();
    EXPECT_TRUE(client.createAuthorizedOrder(payload, false).noConnection);
    EXPECT_EQ(client.sent,
              std::tuple(QStringLiteral("Offline.CreateAuthorizedOrder"), payload, QString()));
    const auto status = client.changeOrderStatus(payload, false);
    EXPECT_EQ(status.status, OperationStatus::Undefined);
    EXPECT_FALSE(status.noConnection);
    EXPECT_EQ(http.requests, 1);
    EXPECT_EQ(LogCapture::take().filter(QStringLiteral("I ")),
              QStringList({QStringLiteral("I Создание заказа авторизованного клиента"),
                           QStringLiteral("I Отправка сообщения создания заказа в очередь"),
                           QStringLiteral("I Отправка сообщения подтверждения заказа в очередь")}));

    auto messages = queued();
    ASSERT_EQ(messages.size(), 2);
    auto dated = messages[0][QLatin1String("payload")].toObject();
    // Read with its zone: as local time the hour that summer time skips would not be valid.
    const auto time = QDateTime::fromString(
        dated.take(QLatin1String("executionDateTimeUtc")).toString() + QLatin1String(" UTC"),
        QStringLiteral("dd.MM.yyyy HH:mm:ss t"));
    ASSERT_TRUE(time.isValid());
    EXPECT_GE(time, before.addSecs(-1)); // the text has no milliseconds
    EXPECT_LE(time, QDateTime::currentDateTimeUtc());
    EXPECT_EQ(dated, payload);
    messages[0].insert(QLatin1String("payload"), dated);
    EXPECT_EQ(messages[0], QJsonObject({{QStringLiteral("method"), QStringLiteral("create")},
                                        {QStringLiteral("payload"), payload}}));
    EXPECT_EQ(messages[1], QJsonObject({{QStringLiteral("method"), QStringLiteral("change")},
                                        {QStringLiteral("payload"), payload}}));
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
    EXPECT_TRUE(LogCapture::take().contains(QStringLiteral("I Изменение статуса заказа")));
    EXPECT_EQ(client.sent, std::tuple(QStringLiteral("Offline.ChangeStatus"), payload, QString()));
    EXPECT_TRUE(queued().isEmpty());
}

} // namespace
} // namespace lmmindbox
