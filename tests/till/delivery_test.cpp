#include "deliveryfixture.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using Outcome = till::Deliverer::Outcome;

TEST_F(Delivery, SendsInOrderAndRemovesAMessageOnlyWhenItsAnswerIsIn)
{
    for (const auto *name : {"A", "B"}) {
        put("create", order(name));
        put("change", order(name));
    }
    service.whileSending = [&] { EXPECT_EQ(state().waiting, 4); }; // removed in a group
    EXPECT_EQ(deliver(), Outcome::Emptied);
    EXPECT_THAT(service.received, ElementsAre("+A", "=A", "+B", "=B"));
    EXPECT_EQ(state().waiting, 0);

    // A group is bounded.
    constexpr int messages = 2 * till::Deliverer::groupSize + 1;
    for (int i = 0; i < messages; ++i)
        put("create", order("A"));
    service.received.clear();
    std::vector<qint64> waiting;
    service.whileSending = [&] { waiting.push_back(state().waiting); };
    EXPECT_EQ(deliver(), Outcome::Emptied);
    EXPECT_EQ(service.received.size(), messages);
    EXPECT_LE(waiting.back(), till::Deliverer::groupSize);
    EXPECT_EQ(state().waiting, 0);
}

TEST_F(Delivery, AMessageWithoutTheServicesAnswerStaysFirst)
{
    put("create", order("A"));
    put("change", order("A"));
    service.failing = "A";
    const http::Response answers[] = {
        {0, 7, {}},
        {200, 0, {}},
        {200, 0, "<html>Log in</html>"},
        {500, 0, {}},
        {401, 0, R"({"status":"ProtocolError"})"},
        {429, 0, R"({"status":"ProtocolError"})"},
        {503, 0, R"({"errorMessage":"busy"})"},
    };
    int tries = 0;
    for (const auto &answer : answers) {
        service.failure = answer;
        EXPECT_EQ(deliver(), Outcome::Unreachable);
        EXPECT_EQ(state().waiting, 2);
        const auto oldest = state().oldest.value_or(QueuedMessage());
        EXPECT_EQ(oldest.tries, ++tries);
        EXPECT_THAT(oldest.lastError.toStdString(), HasSubstr("HTTP code"));
        EXPECT_EQ(service.received.back(), "+A");
    }
    // Put off for too long, it no longer keeps the others from going out, whoever counts.
    while (state().parked == 0 && tries < 2 * till::Deliverer::mostDeferrals) {
        ++tries;
        till::Deliverer(broker, interface).deliver([] { return false; });
    }
    constexpr int withoutAnswer = 4;
    EXPECT_EQ(tries, till::Deliverer::mostDeferrals + withoutAnswer);
    EXPECT_EQ(service.received.back(), "=A");
}

TEST_F(Delivery, AMessageParkedByHandWhileItIsSentStaysParkedWithItsReason)
{
    const http::Response answers[] = {
        {0, 7, {}}, {503, 0, R"({"errorMessage":"busy"})"}, {400, 0, R"({"status":"Error"})"}};
    service.failing = "A";
    for (const auto &answer : answers) {
        service.failure = answer;
        put("create", order("A"));
        const auto waiting = broker.first(till::loyaltyQueue());
        ASSERT_TRUE(waiting) << broker.lastError().toStdString();
        const auto id = waiting->id;
        service.whileSending = [&] {
            EXPECT_TRUE(DBQueueBroker(broker.file()).park(id, QStringLiteral("by hand")));
        };
        EXPECT_NE(deliver(), Outcome::Unusable) << broker.lastError().toStdString();
        service.whileSending = [] {};
        EXPECT_EQ(broker.parked(till::loyaltyQueue()).constLast().id, id);
        EXPECT_EQ(broker.parked(till::loyaltyQueue()).constLast().lastError,
                  QStringLiteral("by hand"));
    }
}

TEST_F(Delivery, ARefusedOrMalformedMessageIsParkedWithTheReasonAndTheRestGoesOn)
{
    service.failing = "A";
    service.failure = {400, 0,
                       R"({"status":"ValidationError","text":")" + QByteArray(9999, 'x') + "\"}"};
    put("create", order("A"));
    put("erase", order("B"));
    put("create", QJsonValue(1));
    put("create", order("C"));
    EXPECT_EQ(deliver(), Outcome::Emptied);
    const auto parked = broker.parked(till::loyaltyQueue());
    ASSERT_EQ(parked.size(), 3);
    EXPECT_THAT(parked.at(0).lastError.toStdString(), HasSubstr("ValidationError"));
    EXPECT_LT(parked.at(0).lastError.size(), 5'000);
    EXPECT_THAT(parked.at(1).lastError.toStdString(), HasSubstr("unknown method"));
    EXPECT_THAT(parked.at(2).lastError.toStdString(), HasSubstr("no payload"));
    EXPECT_THAT(service.received, ElementsAre("+A", "+C"));
}

TEST_F(Delivery, OnlyOneDelivererWorksOnAQueue)
{
    put("create", order("A"));
    DBQueueBroker otherBroker(broker.file());
    till::Deliverer other(otherBroker, interface);
    auto outcome = Outcome::Emptied;
    service.whileSending = [&] { outcome = other.deliver([] { return false; }).outcome; };
    deliver();
    EXPECT_EQ(outcome, Outcome::Busy);
    EXPECT_EQ(service.received.size(), 1);
    EXPECT_EQ(other.deliver([] { return false; }).outcome, Outcome::Emptied);
    broker.setFile(directory.path());
    EXPECT_EQ(deliver(), Outcome::Unusable);
}

} // namespace
