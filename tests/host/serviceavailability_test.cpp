#include "exchange.h"
#include "support.h"

#include <host/circuitbreaker.h>
#include <host/serviceavailability.h>

#include <log4qt/logmanager.h>

#include <QElapsedTimer>
#include <QLocale>

#include <curl/curl.h>

#include <thread>

using namespace std::chrono_literals;

TEST(ServiceAvailability, WaitsForAHungServiceOnceUntilADeliveryFindsItAnswering)
{
    constexpr auto timeout = 300;
    const WireServer hung({{""}, {okReply("{}")}});
    RestClient client;
    client.setLogger(Log4Qt::LogManager::logger(QStringLiteral("resttest")));
    client.setTimeout(timeout);
    set("Http:retryFirst", QStringLiteral("60000"));
    const LogCapture log;
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(exchange(client, hung).getTransportCode(), CURLE_OPERATION_TIMEDOUT);
    for (auto sale = 1; sale < 10; ++sale) {
        RestClient other;
        const auto response = exchange(other, hung);
        EXPECT_EQ(response.getHttpCode(), 0);
        EXPECT_EQ(response.getTransportCode(), RestClient::notSent);
    }
    exchange(client, hung);
    EXPECT_LT(timer.elapsed(), 2 * timeout);
    EXPECT_TRUE(LogCapture::has(QStringLiteral("not sent, without an answer since")));
    EXPECT_EQ(hung.requests, 1);

    const auto &services = *Singleton<ServiceAvailability>::instance();
    EXPECT_FALSE(services.state(url(hung.port)).unreachableSince.isNull());
    std::thread([&hung] {
        RestClient::setPurpose(RestClient::Purpose::Delivery);
        RestClient other;
        exchange(other, hung);
    }).join();
    EXPECT_EQ(services.state(url(hung.port)).reach, ServiceAvailability::Reach::Reachable);
    EXPECT_EQ(exchange(client, hung).getHttpCode(), 200);
    Singleton<Config>::instance()->clear();
}

TEST(ServiceAvailability, GivesATrialOfAHungServiceLessTimeThanUsual)
{
    const WireServer hung({{""}});
    RestClient client;
    client.setTimeout(400);
    set("Http:retryFirst", QStringLiteral("30"));
    exchange(client, hung);
    std::this_thread::sleep_for(40ms);
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(exchange(client, hung).getTransportCode(), CURLE_OPERATION_TIMEDOUT);
    EXPECT_LT(timer.elapsed(), 300);
    Singleton<Config>::instance()->clear();
}

TEST(ServiceAvailability, NotesHowLongAServiceAsksToBeLeftAlone)
{
    const auto date = [](int seconds) {
        const auto time = QDateTime::currentDateTimeUtc().addSecs(seconds);
        return QLocale::c().toString(time, QStringLiteral("ddd, dd MMM yyyy hh:mm:ss 'GMT'"));
    };
    const std::tuple<int, QString, std::chrono::seconds> cases[] = {
        {429, QStringLiteral("120"), 120s},
        {503, date(600), 600s},
        {503, QStringLiteral("999999999"), 1h},
        {503, date(99'999), 1h},
        {503, date(-60), 0s},
        {503, QStringLiteral("soon"), 0s},
        {503, QStringLiteral("-5"), 0s},
        {200, QStringLiteral("120"), 0s},
    };
    for (const auto &[code, value, expected] : cases) {
        SCOPED_TRACE(value.toStdString());
        const WireServer server({{"HTTP/1.1 " + QByteArray::number(code) + " X\r\nretry-after: " +
                                  value.toLatin1() + "\r\nContent-Length: 2\r\n\r\n{}"}});
        RestClient client;
        EXPECT_EQ(exchange(client, server).getHttpCode(), code);
        const auto state = Singleton<ServiceAvailability>::instance()->state(url(server.port));
        EXPECT_LE(state.retryAfter, expected);
        EXPECT_GE(state.retryAfter, expected - std::min<std::chrono::seconds>(expected, 20s));
    }
}

TEST(CircuitBreaker, LetsOneTrialThroughAfterWaitsThatDoubleUpToTheLongest)
{
    CircuitBreaker breaker({1s, 10s});
    CircuitBreaker::Time now;
    const auto patience = [&breaker](CircuitBreaker::Time at) { return breaker.patience(at, 5s); };
    EXPECT_EQ(patience(now), 5s);
    breaker.noteFailure(now);
    const std::pair<std::chrono::seconds, std::chrono::seconds> waits[] = {
        {1s, 1s}, {2s, 1s}, {4s, 1s}, {8s, 2s}, {10s, 4s}, {10s, 5s}, {10s, 5s}};
    for (const auto &[wait, trial] : waits) {
        EXPECT_EQ(patience(now + wait - 1ms), 0s);
        now += wait;
        EXPECT_EQ(patience(now), trial);
        EXPECT_EQ(patience(now), 0s) << "while the trial is under way";
        breaker.noteNothing();
        EXPECT_EQ(patience(now), trial) << "the trial said nothing";
        breaker.noteFailure(now);
    }
    breaker.noteFailure(now + 3s); // a delivery's: the wait begins anew, and it is not slowness
    EXPECT_EQ(patience(now + 12s), 0s);
    EXPECT_EQ(patience(now + 13s), 1s);
    breaker.noteAnswer();
    EXPECT_EQ(patience(now), 5s);
    EXPECT_EQ(patience(now), 5s);
    breaker.noteFailure(now);
    EXPECT_EQ(patience(now + 1s), 1s) << "the first wait again";

    CircuitBreaker off({0s, 5s});
    off.noteFailure(now);
    EXPECT_EQ(off.patience(now, 5s), 5s);
}
