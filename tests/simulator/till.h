#pragma once

#include "simulator/simulator.h"

#include <QJsonDocument>

#include <gtest/gtest.h>
#include <httplib.h>

/// Shared by the simulator's tests: bodies, and a client that sends them as tills do.
namespace simulatortest {

using namespace Qt::StringLiterals;
using simulator::Simulator;

inline const auto create = u"CreateAuthorizedOrder"_s;
inline const auto change = u"ChangeStatus"_s;
inline const auto edit = u"EditCustomer"_s;
inline const auto get = u"GetCustomer"_s;
inline const auto phone = uR"("mobilePhone":"79160000001")"_s;
inline const auto data = uR"(,"sex":"male","firstName":"Ив")"_s;
inline const auto email = uR"("email":"i@example.org")"_s;

inline QString customerBody(const QString &members)
{
    return R"({"pointOfContact":"Offline","customer":{)"_L1 + members + "}}"_L1;
}

inline QString orderBody(int total, const QString &customer = phone, int id = 42)
{
    return customerBody(customer).chopped(1) +
           uR"(,"order":{"lines":[{"basePricePerItem":10.5,"discountedPricePerLine":%1,
             "quantity":2,"lineNumber":1,"lineId":7,"product":{"ids":{"sku":"1"}}}],
             "totalPrice":%1,"ids":{"till":"%2"}}})"_s.arg(total)
               .arg(id);
}

inline const auto statusBody =
    uR"({"pointOfContact":"Offline","order":{"lines":[{"basePricePerItem":10.5,
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

    /// The processing status of the operation's entity.
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

/// The last unused code sent to the phone.
inline QString lastCode(const Simulator &service, const QString &phone)
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
    Simulator service{{.seed = 1}};
    const simulator::State::Done started = service.start();
    Till till{service};
    void SetUp() override { ASSERT_TRUE(started) << qPrintable(started.error()); }

    void order(const char *fault)
    {
        const auto wrong = service.addFault(QJsonDocument::fromJson(fault).object());
        EXPECT_EQ(wrong, QString()) << fault;
    }
    QJsonArray exchanges(const std::string &query = {})
    {
        const auto result = till.client.Get("/simulator/exchanges" + query);
        return QJsonDocument::fromJson(result->body.c_str()).object()["exchanges"_L1].toArray();
    }
};

} // namespace simulatortest
