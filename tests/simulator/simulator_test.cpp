#include "simulator/simulator.h"

#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <httplib.h>

#include <array>
#include <cstdlib>
#include <list>
#include <thread>
#include <tuple>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using simulator::FaultKind;
using simulator::Simulator;

namespace {

const auto create = u"CreateAuthorizedOrder"_s;
const auto change = u"ChangeStatus"_s;
const auto edit = u"EditCustomer"_s;
const auto get = u"GetCustomer"_s;
const auto phone = uR"("mobilePhone":"79160000001")"_s;
const auto data = uR"(,"sex":"male","firstName":"Ив")"_s;
const auto email = uR"("email":"i@example.org")"_s;

QString customerBody(const QString &members)
{
    return R"({"pointOfContact":"Offline","customer":{)"_L1 + members + "}}"_L1;
}

QString orderBody(int total, const QString &customer = phone, int id = 42)
{
    return customerBody(customer).chopped(1) +
           uR"(,"order":{"lines":[{"basePricePerItem":10.5,"discountedPricePerLine":%1,
             "quantity":2,"lineNumber":1,"lineId":7,"product":{"ids":{"sku":"1"}}}],
             "totalPrice":%1,"ids":{"till":"%2"}}})"_s.arg(total)
               .arg(id);
}

const auto statusBody = uR"({"pointOfContact":"Offline","order":{"lines":[{"basePricePerItem":10.5,
    "discountedPriceOfLine":20,"quantity":2,"lineNumber":1,"lineId":7,
    "product":{"ids":{"sku":"1"}},"status":"Paid"}],"ids":{"till":"42"}}})"_s;

struct Till
{
    explicit Till(const Simulator &service)
        : client("127.0.0.1", service.port())
    {
        client.set_keep_alive(true);
        client.set_tcp_nodelay(true);
        client.set_read_timeout(60);
    }

    httplib::Result post(const QString &operation, const QString &body,
                         const std::string &key = "demo-secret",
                         const std::string &type = "application/json; charset=utf-8")
    {
        const auto target = "/v3/operations/sync?endpointId=till-demo&operation=Offline.";
        return client.Post(target + operation.toStdString(),
                           {{"Accept", "application/json"},
                            {"Authorization", R"(Mindbox secretKey=")" + key + '"'}},
                           body.toStdString(), type);
    }

    QJsonObject call(const QString &operation, const QString &body)
    {
        const auto result = post(operation, body);
        return result ? QJsonDocument::fromJson(result->body.c_str()).object() : QJsonObject();
    }

    /// The processing status of what the operation is about.
    QString outcome(const QString &operation, const QString &body)
    {
        const auto answer = call(operation, body);
        for (const auto part : {"order"_L1, "smsConfirmation"_L1, "customer"_L1}) {
            if (answer.contains(part))
                return answer[part]["processingStatus"_L1].toString();
        }
        return answer["errorMessage"_L1].isString() ? u"Error"_s : answer["status"_L1].toString();
    }

    httplib::Client client;
};

/// The unused code last sent to the phone.
QString lastCode(const Simulator &service, const QString &phone)
{
    QString last;
    for (const auto code : service.dump()["codes"_L1].toArray()) {
        if (code["mobilePhone"_L1] == phone)
            last = code["code"_L1].toString();
    }
    return last;
}

struct SimulatorTest : testing::Test
{
    // Whoever is told of an SMS may ask the service for its code.
    Simulator service{{.seed = 1, .print = [this](const QString &) { service.dump(); }}};
    const bool started = service.start();
    Till till{service};
    void SetUp() override { ASSERT_TRUE(started) << qPrintable(service.errorString()); }
};

} // namespace

TEST_F(SimulatorTest, RefusesWhateverDepartsFromTheEnvelope)
{
    const auto body = customerBody(phone);
    const auto refused = [](const httplib::Result &result, int code) {
        return result && result->status == code &&
               result->body.find("demo-s") == std::string::npos &&
               result->body.find("ProtocolError") != std::string::npos;
    };
    EXPECT_TRUE(refused(till.post(get, body, "other"), 401));
    EXPECT_TRUE(refused(till.post(get, body, "demo-secret", "text/json"), 400));
    EXPECT_TRUE(refused(till.post(get, u"["_s), 400));
    EXPECT_TRUE(refused(till.post(get + "&x=1"_L1, body), 400));
    EXPECT_TRUE(refused(till.post(get + "&endpointId=till-demo"_L1, body), 400));
    EXPECT_TRUE(refused(till.client.Post("/v3/operations/sync?operation=x&endpointId=y"), 403));
    EXPECT_TRUE(refused(till.client.Post("/v3/operations/sync?operation=x&endpointId=till-demo",
                                         "{}", "application/json; charset=utf-8"),
                        400));
    EXPECT_TRUE(refused(till.client.Get("/v3/operations/sync"), 405));
    EXPECT_TRUE(refused(till.client.Post("/v3/operations"), 404));
}

TEST_F(SimulatorTest, NamesThePlaceOfEveryFaultInTheBody)
{
    const auto cases = std::to_array<std::tuple<QString, QString, QString>>(
        {{get, customerBody(uR"("mobilePhone":7)"_s), u"customer.mobilePhone"_s},
         {get, customerBody(phone + data), u"customer"_s},
         {edit, customerBody(phone + data + R"(,"birthDate":"2000-01-01")"_L1),
          u"customer.birthDate"_s},
         {create, orderBody(1).replace(R"(Number":1)"_L1, R"(Number":2)"_L1),
          u"order.lines[0].lineNumber"_s},
         {create, orderBody(1).remove(R"("sku":"1")"_L1), u"order.lines[0].product.ids"_s},
         {change, QString(statusBody).remove("Paid"_L1), u"order.lines[0].status"_s}});
    for (const auto &[operation, body, location] : cases) {
        const auto answer = till.call(operation, body);
        EXPECT_EQ(answer["validationMessages"_L1][0]["location"_L1].toString(), location);
        EXPECT_FALSE(answer.contains("errorMessage"_L1));
    }
}

TEST_F(SimulatorTest, ReadsTimesOfExecutionAsUtcInTheHourThatTheClocksLeaveOutToo)
{
    setenv("TZ", "Europe/Berlin", 1);
    const auto at = [&](const char *time) {
        return till.outcome(
            create,
            orderBody(20).insert(1, uR"("executionDateTimeUtc":"%1",)"_s.arg(QLatin1String(time))));
    };
    EXPECT_EQ(at("31.03.2024 02:30:00"), "Processed"_L1);
    EXPECT_EQ(at("31.03.2024 02:60:00"), "ValidationError"_L1);
    EXPECT_EQ(at("30.02.2024 02:30:00"), "ValidationError"_L1);
    EXPECT_EQ(at("2024-03-31T02:30:00Z"), "ValidationError"_L1);
    unsetenv("TZ");
}

TEST_F(SimulatorTest, KeepsOneOrderHoweverOftenItIsSent)
{
    const auto executed = R"("executionDateTimeUtc":"01.02.2024 14:05:09",)"_L1;
    EXPECT_EQ(till.outcome(change, statusBody), "Error"_L1) << "the order is unknown";
    for (const auto &body : {orderBody(20), orderBody(20).insert(1, executed), orderBody(30)})
        EXPECT_EQ(till.outcome(create, body), "Processed"_L1);
    for (const auto &part : {u":10.5"_s, u":20"_s, u"ty\":2"_s, u"Id\":7"_s, u"\":\"1"_s})
        EXPECT_EQ(till.outcome(change, QString(statusBody).replace(part, part + u'9')), "Error"_L1);
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(till.outcome(change, statusBody), "Processed"_L1);

    ASSERT_EQ(service.orders().size(), 1);
    const auto order = service.orders().first();
    EXPECT_EQ(order["totalPrice"_L1].toInt(), 20);
    EXPECT_EQ(order["lines"_L1][0]["status"_L1].toString(), "Paid"_L1);
    EXPECT_EQ(order["repetitions"_L1].toInt(), 2);
    EXPECT_EQ(order["conflicts"_L1].toInt(), 1);
    EXPECT_EQ(order["statusChanges"_L1].toInt(), 1);
}

TEST_F(SimulatorTest, TakesOrdersOfNobodyAndOfKnownCustomersOnly)
{
    const auto cases = std::to_array<std::pair<QLatin1String, QLatin1String>>(
        {{""_L1, "Processed"_L1},
         {"8(916)000-00-10"_L1, "Calculated"_L1},
         {"79169999999"_L1, "NotProcessed"_L1},
         {"79160000009"_L1, "NotProcessed"_L1}});
    for (int id = 0; const auto &[number, outcome] : cases)
        EXPECT_EQ(till.outcome(create, orderBody(1, R"("mobilePhone":")"_L1 + number + u'"', ++id)),
                  outcome);
    EXPECT_EQ(service.orders().size(), 2);
}

TEST_F(SimulatorTest, ConfirmsAPhoneWithTheCodeItSent)
{
    const auto body = customerBody(uR"("mobilePhone":"79160000002")"_s);
    const auto confirm = [&body](Till &till, const QString &code) {
        const auto confirmation = uR"(,"smsConfirmation":{"code":"%1"}})"_s.arg(code);
        return till.outcome(u"ConfirmMobilePhone"_s, body.chopped(1) + confirmation);
    };
    EXPECT_EQ(confirm(till, {}), "IncorrectConfirmationCode"_L1) << "none sent yet";
    till.call(u"ResendMobilePhoneConfirmationCode"_s, body);
    const auto code = lastCode(service, u"79160000002"_s);
    EXPECT_EQ(confirm(till, code + u'0'), "IncorrectConfirmationCode"_L1);
    service.addFault({.kind = FaultKind::WrongCodeAsValidationError, .count = 2});
    EXPECT_EQ(confirm(till, code + u'0'), "ValidationError"_L1);
    EXPECT_EQ(confirm(till, code), "MobilePhoneConfirmed"_L1);
    EXPECT_EQ(confirm(till, code), "AlreadyConfirmed"_L1);
    Simulator forgetful({.codeLifetime = std::chrono::milliseconds(0)});
    ASSERT_TRUE(forgetful.start());
    Till other(forgetful);
    other.call(u"ResendMobilePhoneConfirmationCode"_s, body);
    EXPECT_EQ(confirm(other, lastCode(forgetful, u"79160000002"_s)),
              "IncorrectConfirmationCode"_L1);
}

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

TEST(State, OutlivesTheProcessAndBelongsToOneSimulator)
{
    const QTemporaryDir directory;
    const auto file = directory.filePath(u"state"_s);
    const simulator::Options options{.stateFile = file};
    const auto number = uR"("mobilePhone":"79161234567")"_s;
    QJsonArray orders;
    {
        Simulator service(options);
        ASSERT_TRUE(service.start()) << qPrintable(service.errorString());
        Till till(service);
        till.call(u"RegisterCustomer"_s, customerBody(number + data + u',' + email));
        till.call(create, orderBody(20, number));
        till.call(create, orderBody(10, phone, 5));
        till.call(change, statusBody);
        orders = service.orders();
        Simulator second(options);
        EXPECT_FALSE(second.start());
        EXPECT_TRUE(second.errorString().contains("another simulator"_L1));
        // What a kill leaves: everything is there although nothing was closed.
        for (const auto *const suffix : {"", "-wal"})
            ASSERT_TRUE(
                QFile::copy(file + QLatin1String(suffix), file + u"2"_s + QLatin1String(suffix)));
    }
    for (const auto &name : {file, file + u'2'}) {
        EXPECT_FALSE(QFile::permissions(name) & (QFile::ReadGroup | QFile::ReadOther));
        Simulator service({.stateFile = name});
        ASSERT_TRUE(service.start()) << qPrintable(service.errorString());
        EXPECT_EQ(service.orders(), orders);
        EXPECT_EQ(orders[0]["lines"_L1][0]["status"_L1].toString(), "Paid"_L1);
        EXPECT_EQ(lastCode(service, u"79161234567"_s).size(), 4);
        Till till(service);
        till.call(u"EmailConfirmationLetter"_s, customerBody(email));
        EXPECT_EQ(service.dump()["letters"_L1].toArray().size(), 1);
        till.client.Post("/simulator/reset");
        EXPECT_EQ(service.orders(), QJsonArray());
        EXPECT_EQ(till.outcome(get, customerBody(number)), "NotFound"_L1);
    }
}

TEST(State, AForeignFileIsLeftAlone)
{
    const QTemporaryDir directory;
    QFile file(directory.filePath(u"state"_s));
    for (const QByteArray foreign : {"[Settings]\n", "secret"}) {
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(foreign) > 0);
        file.close();
        EXPECT_FALSE(Simulator({.stateFile = file.fileName()}).start());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_EQ(file.readAll(), foreign);
        file.close();
    }
}
