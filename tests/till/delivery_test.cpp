#include "deliveryfixture.h"

#include <host/config.h>
#include <host/serviceavailability.h>

#include <QDir>

#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;

TEST_F(Delivery, SendsInOrderAndRemovesAMessageOnlyWhenItsAnswerIsIn)
{
    for (const auto *name : {"A", "B"}) {
        put("create", order(name));
        put("change", order(name));
    }
    const auto onDisk = [this] { return till::Store(directory.path()).deliveryState().waiting; };
    service.whileSending = [&] { EXPECT_EQ(onDisk(), 4); }; // removed later, in a group
    EXPECT_EQ(deliver(), Outcome::Empty);
    EXPECT_THAT(service.received, ElementsAre("+A", "=A", "+B", "=B"));
    EXPECT_EQ(onDisk(), 0);

    // A group has a limit.
    constexpr int many = 201;
    for (int i = 0; i < many; ++i)
        put("create", order("A"));
    service.received.clear();
    std::vector<qint64> left;
    service.whileSending = [&] { left.push_back(onDisk()); };
    EXPECT_EQ(deliver(), Outcome::Empty);
    EXPECT_EQ(service.received.size(), many);
    EXPECT_LE(left.back(), 100);
    EXPECT_EQ(onDisk(), 0);
}

TEST_F(Delivery, AMessageWithoutTheServicesAnswerStaysFirst)
{
    FakeClock clock;
    put("create", order("A"));
    put("change", order("B"));
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
        EXPECT_EQ(waiting(), 2);
        EXPECT_EQ(first().tries, ++tries);
        EXPECT_THAT(first().lastError.toStdString(), HasSubstr("HTTP code"));
        EXPECT_EQ(service.received.back(), "+A");
    }
    // After a day of postponement it no longer holds up the others.
    clock.pass(till::Deliverer::longestPutOff - 1ms);
    EXPECT_EQ(deliver(), Outcome::Unreachable);
    service.failure = {0, 7, {}};
    clock.pass(1ms);
    EXPECT_EQ(deliver(), Outcome::Unreachable);
    service.failure = answers[6];
    EXPECT_EQ(deliver(), Outcome::Empty);
    EXPECT_EQ(service.received.back(), "=B");
    EXPECT_EQ(messages(true).size(), 1);
}

TEST_F(Delivery, AMessageParkedByHandWhileItIsSentStaysParkedWithItsReason)
{
    const http::Response answers[] = {
        {0, 7, {}}, {503, 0, R"({"errorMessage":"busy"})"}, {400, 0, R"({"status":"Error"})"}};
    service.failing = "A";
    for (const auto &answer : answers) {
        service.failure = answer;
        put("create", order("A"));
        const auto id = first().id;
        service.whileSending = [&] {
            EXPECT_TRUE(till::Store(directory.path()).setParked({id}, true).value_or(0) == 1);
        };
        (void)deliverer.step();
        service.whileSending = [] {};
        EXPECT_EQ(messages(true).constLast().id, id);
        EXPECT_EQ(messages(true).constLast().lastError, u"by hand"_s);
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
    EXPECT_EQ(deliver(), Outcome::Empty);
    const auto parked = messages(true);
    ASSERT_EQ(parked.size(), 3);
    EXPECT_THAT(parked.at(0).lastError.toStdString(), HasSubstr("ValidationError"));
    EXPECT_LT(parked.at(0).lastError.size(), 5'000);
    EXPECT_THAT(parked.at(1).lastError.toStdString(), HasSubstr("unknown method"));
    EXPECT_THAT(parked.at(2).lastError.toStdString(), HasSubstr("no payload"));
    EXPECT_THAT(service.received, ElementsAre("+A", "+C"));

    // Messages put back keep their old order, and a missing one does no harm.
    service.failing.clear();
    EXPECT_EQ(store.setParked({parked.at(0).id, 999}, false).value_or(-1), 1);
    EXPECT_EQ(deliver(), Outcome::Empty);
    EXPECT_EQ(service.received.back(), "+A");
    EXPECT_EQ(messages(true).size(), 2);
}

TEST_F(Delivery, OnlyOneDelivererWorksOnADirectoryAndALockIsNoFifo)
{
    put("create", order("A"));
    till::Store otherStore(directory.path());
    till::Deliverer other(otherStore, directory.path(), {});
    till::Deliverer::Step meanwhile;
    service.whileSending = [&] { meanwhile = other.step(); };
    deliver();
    EXPECT_EQ(meanwhile.outcome, Outcome::Busy);
    EXPECT_THAT(meanwhile.error.toStdString(), HasSubstr(std::to_string(::getpid())));
    EXPECT_EQ(service.received.size(), 1);
    EXPECT_EQ(other.step().outcome, Outcome::Empty);

    const QTemporaryDir place;
    const auto lock = till::Deliverer::lockFile(place.path());
    ASSERT_EQ(::mkfifo(lock.toLocal8Bit().constData(), 0600), 0);
    const auto held = till::Deliverer(store, place.path(), {}).acquire();
    EXPECT_FALSE(held);
    EXPECT_EQ(till::ProcessLock::holderOf(lock), std::nullopt);
}

TEST_F(Delivery, ALockFileWithoutAHolderIsTakenOver)
{
    for (const QByteArray left : {"", "999999999\ntill\nelsewhere\n"}) {
        for (const auto *suffix : {"", ".rmlock"}) { // Qt's second lock, held during a removal
            const QTemporaryDir place;
            const auto lock = till::Deliverer::lockFile(place.path());
            for (const auto &name : {lock, lock + QLatin1String(suffix)}) {
                QFile file(name);
                ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(left) == left.size());
            }
            till::Deliverer deliverer(store, place.path(), {});
            EXPECT_TRUE(deliverer.acquire()) << left.toStdString() << suffix;
            EXPECT_EQ(till::ProcessLock::holderOf(lock), ::getpid());
        }
    }
}

TEST_F(Delivery, RestsTwiceAsLongAfterEachFailureAndAsLongAsTheServiceAsks)
{
    const auto about = [](std::chrono::milliseconds time) {
        return testing::AllOf(testing::Ge(time * 8 / 10), testing::Le(time * 12 / 10));
    };
    till::Deliverer patient(store, directory.path(), {100ms, 1'000ms});
    (void)patient.step(); // nothing waits: the catching up ends
    put("create", order("A"));
    service.failing = "A";
    for (const auto rest : {100ms, 200ms, 400ms, 800ms, 1'000ms, 1'000ms})
        EXPECT_THAT(patient.step().rest, about(rest));

    service.failure = {503, 0, R"({"errorMessage":"busy"})"};
    service.whileSending = [] {
        Singleton<ServiceAvailability>::instance()->note(ServiceAvailability::Outcome::Answered,
                                                         300s);
    };
    EXPECT_THAT(patient.step().rest, testing::AllOf(testing::Ge(290s), testing::Le(360s)));
    Singleton<ServiceAvailability>::instance()->clear();
}

TEST_F(Delivery, InTheBackgroundStopsWithoutWaitingForTheNextTry)
{
    put("create", order("A"));
    service.failing = "A";
    till::Deliverer background(store, directory.path(), {60s, 60s});
    std::thread thread([&] { background.run([] {}); });
    for (int i = 0; i < 1000 && first().tries == 0; ++i)
        std::this_thread::sleep_for(10ms);
    const auto begun = std::chrono::steady_clock::now();
    background.stop();
    thread.join();
    EXPECT_LT(std::chrono::steady_clock::now() - begun, 10s);
    EXPECT_EQ(first().tries, 1);
}

} // namespace
