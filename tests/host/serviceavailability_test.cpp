#include "exchange.h"

#include <host/circuitbreaker.h>

#include <QLocale>

#include <thread>

using namespace std::chrono_literals;

TEST(ServiceAvailability, WaitsForAHungServiceOnceUntilADeliveryFindsItAnswering)
{
    constexpr auto timeout = 300;
    const WireServer hung({{""}, {okReply("{}")}});
    LoggingClient client;
    client.setTimeout(timeout);
    set("Http:retryFirst", u"60000"_s);
    Singleton<ServiceAvailability>::instance()->clear();
    const LogCapture log;
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(client.ask(hung).getTransportCode(), CURLE_OPERATION_TIMEDOUT);
    for (auto sale = 1; sale < 10; ++sale) {
        const auto response = LoggingClient().ask(hung);
        EXPECT_EQ(response.getHttpCode(), 0);
        EXPECT_EQ(response.getTransportCode(), RestClient::notSent);
    }
    EXPECT_LT(timer.elapsed(), 2 * timeout);
    EXPECT_TRUE(LogCapture::has(u"not sent, without an answer since"_s));
    EXPECT_EQ(hung.requests, 1);

    const auto &services = *Singleton<ServiceAvailability>::instance();
    EXPECT_FALSE(services.state().unreachableSince.isNull());
    std::thread([&hung] {
        RestClient::setPurpose(RestClient::Purpose::Delivery);
        LoggingClient().ask(hung);
    }).join();
    EXPECT_TRUE(services.state().unreachableSince.isNull());
    EXPECT_EQ(client.ask(hung).getHttpCode(), 200);
    Singleton<Config>::instance()->clear();
}

TEST(ServiceAvailability, BoundsTheWholeExchangeAndATrialToATenthOfTheTime)
{
    const WireServer dripping({{okReply("{}"), false, 200}});
    LoggingClient client;
    client.setTimeout(1'000);
    set("Http:retryFirst", u"1"_s);
    Singleton<ServiceAvailability>::instance()->clear();
    for (const auto limit : {5'000, 700}) {
        QElapsedTimer timer;
        timer.start();
        const auto response = client.ask(dripping);
        EXPECT_EQ(response.getTransportCode(), CURLE_OPERATION_TIMEDOUT);
        EXPECT_EQ(response.getHttpCode(), 0);
        EXPECT_LT(timer.elapsed(), limit);
        std::this_thread::sleep_for(2ms);
    }
    Singleton<Config>::instance()->clear();
}

TEST(ServiceAvailability, NotesHowLongAServiceAsksToBeLeftAlone)
{
    const auto date = [](int seconds) {
        const auto time = QDateTime::currentDateTimeUtc().addSecs(seconds);
        return QLocale::c().toString(time, u"ddd, dd MMM yyyy hh:mm:ss 'GMT'"_s);
    };
    const std::tuple<int, QString, std::chrono::seconds> cases[] = {
        {429, u"120"_s, 120s},   {503, date(600), 600s}, {503, u"999999999"_s, 1h},
        {503, date(99'999), 1h}, {503, date(-60), 0s},   {503, u"soon"_s, 0s},
        {503, u"-5"_s, 0s},      {200, u"120"_s, 0s},
    };
    for (const auto &[code, value, expected] : cases) {
        SCOPED_TRACE(value.toStdString());
        const auto answer = u"HTTP/1.1 %1 X\r\nretry-after: %2\r\nContent-Length: 2\r\n\r\n{}"_s;
        const WireServer server({{answer.arg(code).arg(value).toLatin1()}});
        EXPECT_EQ(LoggingClient().ask(server).getHttpCode(), code);
        const auto state = Singleton<ServiceAvailability>::instance()->state();
        EXPECT_LE(state.retryAfter, expected);
        EXPECT_GE(state.retryAfter, expected - std::min<std::chrono::seconds>(expected, 20s));
    }
}

TEST(ServiceAvailability, GivesUpOnAServiceThatLetsWaitOrCannotBeReachedAndOnNoOther)
{
    const WireServer withoutTls({{"what?", true}});
    const WireServer dropping({{"", true}});
    const QUrl nowhere(u"http://service.invalid/"_s);
    const std::tuple<QUrl, QString, bool> cases[] = {
        {QUrl(u"http://127.0.0.1:1/"_s), {}, true},
        {nowhere, {}, true},
        {nowhere, u"http://proxy.invalid"_s, true},
        {url(withoutTls.port, u"https"_s), {}, true},
        {url(dropping.port), {}, false},
    };
    for (const auto &[service, proxy, isGivenUp] : cases) {
        SCOPED_TRACE(service.toString().toStdString() + proxy.toStdString());
        set("Http:proxy", proxy);
        Singleton<ServiceAvailability>::instance()->clear();
        LoggingClient client;
        EXPECT_NE(client.ask(service).getTransportCode(), RestClient::notSent);
        EXPECT_EQ(client.ask(service).getTransportCode() == RestClient::notSent, isGivenUp);
    }
    Singleton<ServiceAvailability>::instance()->clear();
    Singleton<Config>::instance()->clear();
}

TEST(CircuitBreaker, LetsOneShortTrialThroughAfterWaitsThatDoubleUpToTheLongest)
{
    CircuitBreaker breaker({1s, 10s});
    CircuitBreaker::Time now;
    const auto patience = [&breaker](CircuitBreaker::Time at) { return breaker.patience(at, 5s); };
    EXPECT_EQ(patience(now), 5s);
    breaker.noteFailure(now);
    for (const auto wait : {1s, 2s, 4s, 8s, 10s, 10s}) {
        EXPECT_EQ(patience(now + wait - 1ms), 0s);
        now += wait;
        EXPECT_EQ(patience(now), 500ms);
        EXPECT_EQ(patience(now), 0s) << "while the trial is under way";
        breaker.noteFailure(now);
    }
    EXPECT_EQ(patience(now + 10s), 500ms);
    EXPECT_EQ(patience(now + 20s), 500ms) << "the trial said nothing";
    breaker.noteAnswer();
    EXPECT_EQ(patience(now), 5s);
    EXPECT_EQ(patience(now), 5s);
    breaker.noteFailure(now);
    EXPECT_EQ(patience(now + 1s), 500ms) << "the first wait again";

    CircuitBreaker off({0s, 5s});
    off.noteFailure(now);
    EXPECT_EQ(off.patience(now, 5s), 5s);
}
