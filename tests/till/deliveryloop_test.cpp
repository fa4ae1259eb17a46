#include "deliveryfixture.h"
#include "simulator/simulator.h"
#include "till/core/backgrounddelivery.h"
#include "till/core/deliveryloop.h"
#include "till/core/unstoredmessages.h"

#include <host/config.h>
#include <host/serviceavailability.h>

#include <optional>
#include <thread>

namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using Outcome = till::Deliverer::Outcome;

/// Rests without waiting, and stops after so many rests.
class FakePause : public till::DeliveryPause
{
public:
    bool isStopped() override { return rests.size() >= mostRests; }
    void rest(std::chrono::milliseconds time, bool /*wakeable*/) override
    {
        rests.push_back(time);
        whileResting();
    }

    size_t mostRests = 9;
    std::vector<std::chrono::milliseconds> rests;
    std::function<void()> whileResting = [] {};
};

TEST_F(Delivery, WaitsTwiceAsLongAfterEachFailureUpToTheLongestAndStartsAnewAfterASuccess)
{
    put("create", order("A"));
    service.failing = "A";
    FakePause pause;
    pause.mostRests = 10;
    pause.whileResting = [&] {
        if (pause.rests.size() == 7)
            service.failing = "B";
        if (pause.rests.size() == 9)
            put("create", order("B"));
    };
    till::DeliveryLoop(deliverer, till::Backoff({100ms, 1'000ms}), pause).run();
    const auto about = [](std::chrono::milliseconds time) {
        return testing::AllOf(testing::Ge(time * 8 / 10), testing::Le(time * 12 / 10));
    };
    EXPECT_THAT(pause.rests,
                ElementsAre(about(100ms), about(200ms), about(400ms), about(800ms), about(1'000ms),
                            about(1'000ms), about(1'000ms), about(900ms),
                            till::DeliveryRhythm::idleTime, about(100ms)));
}

TEST_F(Delivery, AfterAFailureBringsOneMessageARoundUntilNothingWaits)
{
    for (const auto *name : {"A", "B", "C"})
        put("create", order(name));
    QueuedMessage message;
    message.message = {{QLatin1String("method"), QLatin1String("create")},
                       {QLatin1String("payload"), order("D")}};
    till::UnstoredMessages unstored;
    unstored.add(1, {message});
    service.failing = "A";
    FakePause pause;
    pause.mostRests = 7;
    std::vector<size_t> sent;
    pause.whileResting = [&] {
        service.failing.clear();
        sent.push_back(service.received.size());
        if (sent.size() == 6)
            for (const auto *name : {"E", "F"})
                put("create", order(name));
    };
    till::DeliveryLoop loop(deliverer, till::Backoff({100ms, 1'000ms}), pause);
    loop.setUnstoredMessages(&unstored);
    loop.run();
    EXPECT_THAT(sent, ElementsAre(1, 2, 3, 4, 5, 5, 7));
    EXPECT_THAT(service.received, ElementsAre("+A", "+A", "+B", "+C", "+D", "+E", "+F"));
}

TEST(DeliveryRhythm, RestsTheLongerTheLaterTheAnswersComeAndIsInNoHurryAfterAnOutage)
{
    till::DeliveryRhythm rhythm(till::Backoff({1s, 60s}, [] { return 0.5; }));
    const auto rest = [&](Outcome outcome, auto took) {
        return rhythm.after({outcome}, took, 0s).time;
    };
    for (int i = 0; i < 20; ++i)
        rest(Outcome::Unreachable, 5s);
    auto expected = 60'000.0;
    while ((expected *= 0.9) > 2'500)
        EXPECT_NEAR(rest(Outcome::Stopped, 100ms).count(), expected, 20);
    EXPECT_EQ(rest(Outcome::Stopped, 100ms), 2'500ms);
    EXPECT_EQ(rest(Outcome::Stopped, 2s), 2'750ms);
    for (int i = 0; i < 100; ++i)
        rest(Outcome::Stopped, 4s);
    EXPECT_EQ(rest(Outcome::Stopped, 4s), 60s) << "the longest there is";
    rest(Outcome::Emptied, 0s);
    EXPECT_FALSE(rhythm.isCatchingUp());
    EXPECT_EQ(rest(Outcome::Unreachable, 0s), 1s);
}

TEST_F(Delivery, LeavesTheServiceAloneForAsLongAsItAsks)
{
    put("create", order("A"));
    service.failing = "A";
    service.failure = {503, 0, R"({"errorMessage":"busy"})"};
    auto *const config = Singleton<Config>::instance();
    auto *const services = Singleton<ServiceAvailability>::instance();
    const QUrl url(QStringLiteral("http://service.invalid/x"));
    config->set(QStringLiteral("LmMindbox:url"), url.toString());
    service.whileSending = [&] {
        const auto asked = service.received.size() == 2 ? 300s : 0s;
        services->note(url, ServiceAvailability::Outcome::Answered, asked);
    };
    FakePause pause;
    pause.mostRests = 3;
    till::DeliveryLoop(deliverer, till::Backoff({100ms, 1'000ms}), pause).run();
    config->clear();
    EXPECT_THAT(pause.rests, ElementsAre(testing::Le(120ms),
                                         testing::AllOf(testing::Ge(290s), testing::Le(360s)),
                                         testing::AllOf(testing::Ge(320ms), testing::Le(480ms))));
}

TEST_F(Delivery, InTheBackgroundStopsWithoutWaitingForTheNextTry)
{
    put("create", order("A"));
    service.failing = "A";
    till::UnstoredMessages unstored;
    std::optional<till::BackgroundDelivery> delivery(std::in_place, broker.file(), unstored,
                                                     till::BackoffRange{60s, 60s});
    const auto tries = [this] {
        const auto oldest = state().oldest;
        return oldest ? oldest->tries : 0;
    };
    for (int i = 0; i < 1000 && tries() == 0; ++i)
        std::this_thread::sleep_for(10ms);
    const auto begun = std::chrono::steady_clock::now();
    delivery.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - begun, 10s);
    EXPECT_EQ(tries(), 1);
}

TEST_F(Delivery, InTheBackgroundBringsEachOrderOnceAndItsStatusWhileTheTillSells)
{
    MockFactory<RestClient>::mocked = nullptr; // Over real HTTP.
    simulator::Simulator service;
    ASSERT_TRUE(service.start()) << service.errorString().toStdString();
    service.addFault({.kind = simulator::FaultKind::Drop, .count = 2, .executed = true});
    auto *const config = Singleton<Config>::instance();
    config->set(QStringLiteral("LmMindbox:url"), service.url());
    config->set(QStringLiteral("LmMindbox:endpoint"), QStringLiteral("till-demo"));
    config->set(QStringLiteral("LmMindbox:secretKey"), QStringLiteral("demo-secret"));
    {
        till::UnstoredMessages unstored;
        till::BackgroundDelivery delivery(broker.file(), unstored,
                                          {.first = 10ms, .longest = 50ms});
        for (const auto *id : {"1", "2", "3", "4", "5"}) {
            const auto order = [id](const char *sum, const char *end) {
                return QJsonDocument::fromJson(
                           QByteArray(R"({"order": {"ids": {"externalOrderIdLm": ")") + id +
                           R"("}, "lines": [{"basePricePerItem": 1, "quantity": 1, "lineNumber": 1,
                       "lineId": 1, "product": {"ids": {"websiteLumaret": "4600"}}, ")" +
                           sum + "\": 1" + end)
                    .object();
            };
            put("create", order("discountedPricePerLine",
                                R"(}], "totalPrice": 1}, "customer": {"mobilePhone": ""}})"));
            put("change", order("discountedPriceOfLine", R"(, "status": "Paid"}]}})"));
            delivery.wake();
        }
        for (int i = 0; i < 1000 && state().waiting > 0; ++i)
            std::this_thread::sleep_for(10ms);
    }
    config->clear();
    EXPECT_EQ(state().parked, 0);
    const auto orders = service.orders();
    ASSERT_EQ(orders.size(), 5);
    for (const auto &order : orders) {
        EXPECT_EQ(order[QLatin1String("lines")][0][QLatin1String("status")], QLatin1String("Paid"));
        EXPECT_EQ(order[QLatin1String("conflicts")], 0);
    }
}

} // namespace
