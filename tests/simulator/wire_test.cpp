#include "tests/simulator/till.h"

#include <QElapsedTimer>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <list>
#include <thread>
#include <tuple>

namespace simulatortest {

using namespace std::string_literals;

namespace {

/// Sends the request and returns all bytes until the connection is closed.
std::string raw(int port, const std::string &sent)
{
    const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
    const sockaddr_in address{.sin_family = AF_INET,
                              .sin_port = htons(std::uint16_t(port)),
                              .sin_addr = {htonl(INADDR_LOOPBACK)},
                              .sin_zero = {}};
    EXPECT_EQ(::connect(socket, reinterpret_cast<const sockaddr *>(&address), sizeof(address)), 0);
    EXPECT_EQ(::send(socket, sent.data(), sent.size(), 0), ssize_t(sent.size()));
    std::string received;
    std::array<char, 4096> part{};
    for (ssize_t got = 0; (got = ::recv(socket, part.data(), part.size(), 0)) > 0;)
        received.append(part.data(), std::size_t(got));
    ::close(socket);
    return received;
}

} // namespace

TEST_F(SimulatorTest, PlaysFaultsOnTheWire)
{
    const auto cases = std::to_array<std::tuple<QString, QString, int>>(
        {// HTTP code, 0 for an incomplete answer
         {u"drop"_s, u"\"executed\":true"_s, 0},
         {u"drop"_s, u"\"executed\":false"_s, 0},
         {u"cut"_s, u"\"executed\":true"_s, 0},
         {u"emptyBody"_s, u"\"executed\":false"_s, 200},
         {u"http500"_s, u"\"executed\":true"_s, 500},
         {u"busy"_s, u"\"executed\":false"_s, 503},
         {u"html"_s, u"\"httpCode\":502"_s, 502},
         {u"answer"_s, u"\"httpCode\":299,\"executed\":false"_s, 299},
         {u"delay"_s, u"\"milliseconds\":20"_s, 200},
         {u"slowDrip"_s, u"\"milliseconds\":1"_s, 200}});
    for (const auto &[kind, more, code] : cases) {
        const auto name = kind + (more.endsWith("false"_L1) ? u'-' : u'+');
        SCOPED_TRACE(qPrintable(name));
        const bool slow = kind == "delay"_L1 || kind == "slowDrip"_L1;
        const auto fault = uR"({"kind":"%1","operation":"Offline.EditCustomer",%2})"_s;
        order(qUtf8Printable(fault.arg(kind, more)));
        till.call(get, customerBody(phone)); // Another operation is not hit.
        QElapsedTimer timer;
        timer.start();
        const auto result =
            till.post(edit, customerBody(phone + QString(data).replace(u"Ив"_s, name)));
        EXPECT_EQ(result ? result->status : 0, code);
        EXPECT_EQ(result && result->get_header_value("Retry-After") == "1", code == 503);
        EXPECT_EQ(result && result->body.find("Changed") != std::string::npos, slow);
        EXPECT_GE(timer.elapsed(), slow ? 20 : 0);
        EXPECT_LT(timer.elapsed(), 30000);
        const auto seen = till.call(get, customerBody(phone)).value("customer"_L1);
        EXPECT_EQ(seen["firstName"_L1].toString() == name, name.endsWith(u'+'));
    }
}

TEST_F(SimulatorTest, AnswersAsItIsTold)
{
    order(R"({"kind":"answer","count":2,"body":{"status":"Success","errorMessage":"x"}})");
    EXPECT_EQ(till.outcome(get, customerBody(phone)), "Error"_L1);
    EXPECT_EQ(exchanges()[0]["outcome"_L1].toString(), "Error"_L1);
    EXPECT_EQ(till.post(get, customerBody(phone))->get_header_value("Content-Type"),
              "application/json; charset=utf-8");
    order(R"({"kind":"answer","httpCode":429,"headers":{"X-Odd":"1","Content-Type":"a/b"},
              "body":"no JSON"})");
    const auto odd = till.post(get, customerBody(phone));
    EXPECT_EQ(odd->body, "no JSON");
    EXPECT_EQ(odd->get_header_value("X-Odd") + odd->get_header_value("Content-Type"), "1a/b");
    order(R"({"kind":"answer","body":[true],"trailers":{"X-Sum":"7"}})");
    EXPECT_TRUE(
        raw(service.port(), "POST /v3/operations/sync HTTP/1.1\r\nConnection: close\r\n\r\n")
            .ends_with("\r\n\r\n6\r\n[true]\r\n0\r\nX-Sum: 7\r\n\r\n"));
    EXPECT_EQ(till.outcome(get, customerBody(phone)), "Found"_L1) << "on the same connection";
}

TEST_F(SimulatorTest, AnswersEveryPipelinedRequestAndNoneBehindAMalformedOne)
{
    const auto exchange = [this](const std::string &sent) {
        const auto received = raw(service.port(), sent);
        int answers = 0;
        for (auto at = received.find("HTTP/1.1 "); at != std::string::npos;
             at = received.find("HTTP/1.1 ", at + 1))
            ++answers;
        return answers;
    };
    const auto host = "Host: 127.0.0.1\r\n"s;
    const auto dump = "GET /simulator/dump HTTP/1.1\r\n" + host;
    const auto order = "POST /v3/operations/sync?operation=x&endpointId=y HTTP/1.1\r\n" + host;
    EXPECT_EQ(exchange(order + "Content-Length: 2\r\n\r\n{}" + dump + "\r\n" + dump +
                       "Connection: close\r\n\r\n"),
              3);
    for (const auto &malformed :
         {"nonsense\r\n\r\n"s, order + "Transfer-Encoding: chunked\r\n\r\nzz\r\n",
          order + "Content-Length: 2\r\nContent-Length: 3\r\n\r\n", order + "no field\r\n\r\n"})
        EXPECT_EQ(exchange(malformed + dump + "\r\n"), 1) << malformed;
}

TEST_F(SimulatorTest, RefusesByNameWhatIsOutOfRangeInAFaultOrder)
{
    const auto cases = std::to_array<std::pair<const char *, const char *>>(
        {{R"({"kind":"drop","count":5000000000})", "count"},
         {R"({"kind":"drop","count":-1})", "count"},
         {R"({"kind":"dropp"})", "kind"},
         {R"({"kind":"busy","retryAfter":"1"})", "retryAfter"},
         {R"({"kind":"delay","milliseconds":2147483647})", "milliseconds"},
         {R"({"kind":"emptyBody","httpCode":100})", "httpCode"},
         {R"({"kind":"drop","probability":7})", "probability"},
         {R"({"kind":"drop","count":1.5})", "count"},
         {R"({"kind":"html","htpCode":502})", "htpCode"},
         {R"({"kind":"drop","httpCode":502})", "httpCode"},
         {R"({"kind":"drop","operation":"Offline.GetCustomers"})", "operation"},
         {R"({"kind":"answer","headers":{"X":"a\nb"}})", "headers"},
         {R"({"kind":"emptyBody","count":1,"httpCode":599})", "Success"}});
    for (const auto &[order, named] : cases) {
        const auto result = till.client.Post("/simulator/faults", order, "application/json");
        EXPECT_TRUE(result && result->body.find(named) != std::string::npos) << order;
    }
    for (const auto *const query : {"?kind=nope", "?knid=drop", "?kind=drop&kind=cut"})
        EXPECT_EQ(till.client.Delete("/simulator/faults"s + query)->status, 400) << query;
}

TEST_F(SimulatorTest, KeepsAJournalThatFollowsOneSaleAndHoldsNoKey)
{
    till.post(get, customerBody(phone));
    till.post(create, orderBody(20));
    till.post(change, statusBody);
    till.post(create, orderBody(30, phone, 43));
    order(R"({"kind":"drop","executed":false})");
    till.post(create, orderBody(30, phone, 44));
    till.post(edit, customerBody(u"\"demo-secret\":1"_s), "demo-secret");
    const auto sale = exchanges("?order=42");
    ASSERT_EQ(sale.size(), 2);
    EXPECT_EQ(sale[0]["operation"_L1].toString(), "Offline.ChangeStatus"_L1);
    EXPECT_EQ(sale[0]["phone"_L1].toString(), "79160000001"_L1) << "the order's";
    EXPECT_EQ(sale[1]["outcome"_L1].toString(), "Processed"_L1);
    EXPECT_TRUE(
        sale[1]["request"_L1]["head"_L1].toString().contains("Accept: application/json"_L1));
    EXPECT_EQ(sale[1]["request"_L1]["body"_L1].toString(), orderBody(20));
    EXPECT_TRUE(sale[1]["answer"_L1]["head"_L1].toString().startsWith("HTTP/1.1 200"_L1));
    const auto lost =
        exchanges("?phone=89160000001&operation=Offline.CreateAuthorizedOrder&limit=1");
    ASSERT_EQ(lost.size(), 1);
    EXPECT_EQ(lost[0]["order"_L1].toString(), "44"_L1);
    EXPECT_EQ(lost[0]["httpCode"_L1].toInt(), 0);
    EXPECT_FALSE(lost[0]["isDone"_L1].toBool());
    EXPECT_EQ(exchanges().size(), 6);
    EXPECT_EQ(till.client.Get("/simulator/exchanges")->body.find("demo-secret"), std::string::npos);
    for (int i = 0; i < 150; ++i)
        till.post(get, customerBody(phone));
    EXPECT_EQ(exchanges().size(), 100);
    EXPECT_EQ(exchanges("?limit=1000").size(), 156);
    for (const auto *const query :
         {"?limit=0", "?limit=x", "?phone=1", "?operation=Get", "?nope=1"})
        EXPECT_EQ(till.client.Get("/simulator/exchanges"s + query)->status, 400) << query;
}

TEST_F(SimulatorTest, TakesAndForgetsCustomers)
{
    const auto put = [this](const char *path, const char *customer) {
        return till.client.Put("/simulator/customers/"s + path, customer, "application/json")
            ->status;
    };
    EXPECT_EQ(put("8-903-123-45-67", R"({"firstName":"Ольга","isMobilePhoneConfirmed":true})"),
              200);
    const auto body = customerBody(u"\"mobilePhone\":\"79031234567\""_s);
    const QJsonValue known = till.call(get, body)["customer"_L1]; // auto would dangle
    EXPECT_EQ(known["firstName"_L1].toString(), u"Ольга"_s);
    EXPECT_TRUE(known["isMobilePhoneConfirmed"_L1].toBool());
    EXPECT_FALSE(known["isEmailConfirmed"_L1].toBool(true));
    EXPECT_EQ(put("79031234567", R"({"firstNam":"x"})"), 400);
    EXPECT_EQ(put("79031234567", R"({"sex":"x"})"), 400);
    EXPECT_EQ(put("12", "{}"), 400);
    EXPECT_EQ(till.client.Delete("/simulator/customers/79031234567")->status, 200);
    EXPECT_EQ(till.outcome(get, body), "NotFound"_L1);
    EXPECT_EQ(till.client.Delete("/simulator/customers/79031234567")->status, 404);
}

TEST_F(SimulatorTest, PlaysAFaultOnAllRequestsOrAtRandomUntilItsKindIsDropped)
{
    const auto hits = [this](int requests) {
        int hit = 0;
        for (int i = 0; i < requests; ++i)
            hit += till.post(get, customerBody(phone))->status == 429;
        return hit;
    };
    order(R"({"kind":"busy","httpCode":429,"count":0})");
    EXPECT_EQ(hits(20), 20);
    till.client.Delete("/simulator/faults");
    order(R"({"kind":"busy","httpCode":429,"count":0,"probability":0.5})");
    const auto atRandom = hits(200);
    EXPECT_GT(atRandom, 60);
    EXPECT_LT(atRandom, 140);
    till.client.Delete("/simulator/faults?kind=drop");
    EXPECT_GT(hits(100), 0);
    till.client.Delete("/simulator/faults?kind=busy");
    EXPECT_EQ(hits(20), 0);
    EXPECT_EQ(service.dump()["faults"_L1]["waiting"_L1].toArray(), QJsonArray());
}

TEST(Capacity, WhatComesFasterWaitsAndIsThenTurnedAwayUnserved)
{
    Simulator service({.capacity = 20});
    ASSERT_TRUE(service.start());
    std::atomic<int> done = 0;
    std::atomic<int> slow = 0;
    std::atomic<int> away = 0;
    std::list<std::jthread> tills;
    for (int i = 0; i < 60; ++i)
        tills.emplace_back([&, i] {
            Till till(service);
            QElapsedTimer timer;
            timer.start();
            const auto result = till.post(create, orderBody(1, phone, i));
            slow += timer.elapsed() > 500;
            done += result && result->status == 200;
            away += result && result->status == 503 && result->has_header("Retry-After");
        });
    tills.clear();
    EXPECT_EQ(done + away, 60);
    EXPECT_NEAR(done, 2 * 20, 12) << "two seconds' worth wait";
    EXPECT_GT(slow, 20);
    EXPECT_EQ(service.orders().size(), done);
    EXPECT_EQ(service.dump()["faults"_L1]["played"_L1]["capacity"_L1].toInt(), away);
}

TEST_F(SimulatorTest, LetsOnlyItsOwnPageAndProgramsWithoutAPageChangeOrReadIt)
{
    const auto own = "127.0.0.1:" + std::to_string(service.port());
    const auto cases = std::to_array<std::pair<httplib::Headers, bool>>({
        {{}, true},
        {{{"Origin", "http://" + own}, {"Sec-Fetch-Site", "same-origin"}}, true},
        {{{"Host", "localhost:1"}, {"Origin", "http://localhost:1"}}, true},
        {{{"Origin", "http://localhost:1"}}, false},
        {{{"Origin", "https://" + own}}, false},
        {{{"Origin", "null"}}, false},
        {{{"Sec-Fetch-Site", "cross-site"}}, false},
        {{{"Sec-Fetch-Site", "same-site"}}, false},
        {{{"Host", "localhost.example.org"}}, false},
        {{{"Host", "elsewhere:80"}, {"Origin", "http://elsewhere:80"}}, false},
    });
    const auto type = "application/json";
    for (const auto &[headers, allowed] : cases) {
        SCOPED_TRACE(headers.empty() ? "" : headers.begin()->second);
        for (const auto &result : {till.client.Post("/simulator/reset", headers, "", type),
                                   till.client.Post("/simulator/faults", headers, "{}", type),
                                   till.client.Delete("/simulator/faults", headers),
                                   till.client.Delete("/simulator/customers/1", headers),
                                   till.client.Put("/simulator/customers/1", headers, "", type)})
            EXPECT_EQ(result->status == 403, !allowed);
        const bool isHere = !headers.contains("Host") || allowed;
        for (const auto *const path : {"/", "/script.js", "/simulator/dump"})
            EXPECT_EQ(till.client.Get(path, headers)->status, isHere ? 200 : 403) << path;
    }
    EXPECT_EQ(till.client.Get("/simulator/reset")->status, 404);
    EXPECT_TRUE(till.client.Get("/")
                    ->get_header_value("Content-Security-Policy")
                    .starts_with("default-src 'none'; script-src 'self'"));
}

} // namespace simulatortest
