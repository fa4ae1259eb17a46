#include "tests/simulator/till.h"

#include <QElapsedTimer>

#include <array>
#include <atomic>
#include <list>
#include <thread>
#include <tuple>

namespace simulatortest {

TEST_F(SimulatorTest, PlaysFaultsOnTheWire)
{
    const auto cases = std::to_array<std::tuple<FaultKind, bool, int>>(
        {// executed; HTTP code, 0 for no whole answer
         {FaultKind::Drop, true, 0},
         {FaultKind::Drop, false, 0},
         {FaultKind::Cut, true, 0},
         {FaultKind::EmptyBody, false, 200},
         {FaultKind::Http500, true, 500},
         {FaultKind::Busy, false, 503},
         {FaultKind::Html, true, 200},
         {FaultKind::Delay, true, 200},
         {FaultKind::SlowDrip, true, 200}});
    for (const auto &[kind, executed, code] : cases) {
        const auto name = simulator::faultName(kind) + (executed ? u'+' : u'-');
        SCOPED_TRACE(qPrintable(name));
        const bool slow = kind == FaultKind::Delay || kind == FaultKind::SlowDrip;
        service.addFault({.kind = kind,
                          .operation = u"Offline.EditCustomer"_s,
                          .executed = executed,
                          .milliseconds = kind == FaultKind::Delay ? 20 : 1});
        till.call(get, customerBody(phone)); // Another operation: not hit.
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
        EXPECT_EQ(seen["firstName"_L1].toString() == name, executed);
    }
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
         {R"({"random":{"seed":1,"probability":7,"kinds":["cut"]}})", "probability"},
         {R"({"random":{"seed":1,"probability":1,"kinds":[]}})", "kinds"},
         {R"({"kind":"emptyBody","count":1,"milliseconds":0,"httpCode":599})", "Success"}});
    for (const auto &[order, named] : cases) {
        const auto result = till.client.Post("/simulator/faults", order, "application/json");
        EXPECT_TRUE(result && result->body.find(named) != std::string::npos) << order;
    }
}

TEST_F(SimulatorTest, PlaysAFaultOnAllRequestsOrByLotUntilItsKindIsDropped)
{
    const auto hits = [this](int requests) {
        int hit = 0;
        for (int i = 0; i < requests; ++i)
            hit += till.post(get, customerBody(phone))->status == 429;
        return hit;
    };
    const auto order = [this](const char *fault) {
        EXPECT_EQ(till.client.Post("/simulator/faults", fault, "application/json")->status, 200);
    };
    order(R"({"kind":"busy","httpCode":429,"count":0})");
    order(R"({"random":{"seed":1,"probability":1,"kinds":["drop","cut"]}})");
    EXPECT_EQ(hits(20), 20) << "before what is drawn from several kinds";
    till.client.Delete("/simulator/faults");
    order(R"({"kind":"busy","httpCode":429,"count":0,"probability":0.5})");
    const auto byLot = hits(200);
    EXPECT_GT(byLot, 60);
    EXPECT_LT(byLot, 140);
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
                                   till.client.Delete("/simulator/faults", headers)})
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

TEST_F(SimulatorTest, CountsConnectionsAndStopsAtOnceWhileTheyAreKept)
{
    ASSERT_TRUE(till.post(get, customerBody(phone)) && till.client.Post("/simulator/reset"));
    for (int i = 0; i < 10; ++i)
        till.call(get, customerBody(phone));
    std::list<Till> others;
    for (int i = 0; i < 100; ++i)
        others.emplace_back(service).call(get, customerBody(phone));
    EXPECT_EQ(service.dump()["connections"_L1].toInt(), 101);
    EXPECT_EQ(service.dump()["requests"_L1]["Offline.GetCustomer"_L1].toInt(), 110);
    QElapsedTimer timer;
    timer.start();
    service.stop();
    EXPECT_LT(timer.elapsed(), 5000) << "the keep-alive time is 30 s";
}

} // namespace simulatortest
