#include "tests/simulator/till.h"
#include "tests/support/timezone.h"

#include <array>
#include <tuple>

namespace simulatortest {

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
    EXPECT_TRUE(refused(till.client.Post("/v3/operations/sync?operation=x&endpointId=y",
                                         {{"Accept", "application/json"}}, "{}",
                                         "application/json; charset=utf-8"),
                        403));
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
         {get, customerBody(phone + data), u"customer.firstName"_s},
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
    const TimeZone zone("Europe/Berlin");
    const auto at = [&](const char *time) {
        return till.outcome(
            create,
            orderBody(20).insert(1, uR"("executionDateTimeUtc":"%1",)"_s.arg(QLatin1String(time))));
    };
    EXPECT_EQ(at("31.03.2024 02:30:00"), "Processed"_L1);
    EXPECT_EQ(at("31.03.2024 02:60:00"), "ValidationError"_L1);
    EXPECT_EQ(at("30.02.2024 02:30:00"), "ValidationError"_L1);
    EXPECT_EQ(at("2024-03-31T02:30:00Z"), "ValidationError"_L1);
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
    EXPECT_EQ(confirm(till, code), "MobilePhoneConfirmed"_L1);
    EXPECT_EQ(lastCode(service, u"79160000002"_s), QString()) << "used up";
    EXPECT_EQ(confirm(till, code), "AlreadyConfirmed"_L1);
    Simulator forgetful({.codeLifetime = std::chrono::milliseconds(0)});
    ASSERT_TRUE(forgetful.start());
    Till other(forgetful);
    other.call(u"ResendMobilePhoneConfirmationCode"_s, body);
    EXPECT_EQ(confirm(other, lastCode(forgetful, u"79160000002"_s)),
              "IncorrectConfirmationCode"_L1);
}

} // namespace simulatortest
