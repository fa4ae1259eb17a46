#pragma once

#include "tests/support/fakehttp.h"
#include "till/core/deliverer.h"

#include "interface/interface.h"

#include <host/dbqueuebroker.h>

#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <functional>

/// The service: answers by the message's name and keeps what came, "create" messages as "+name"
/// and "change" messages as "=name".
class FakeService : public FakeRestClient
{
public:
    void send(const QUrl &url, const QJsonDocument &document,
              const QHash<QString, QString> &headers) override
    {
        FakeRestClient::send(url, document, headers);
        const auto name = sentBody.value(QLatin1String("name")).toString().toStdString();
        const auto isChange = url.query().contains(QLatin1String("ChangeStatus"));
        received.push_back((isChange ? '=' : '+') + name);
        answer =
            isChange ? R"({"status":"Success"})" : R"({"order":{"processingStatus":"Processed"}})";
        httpCode = 200;
        if (name == failing) {
            answer = failure.getBody();
            httpCode = failure.getHttpCode();
        }
        whileSending();
    }

    std::vector<std::string> received;
    std::string failing;
    http::Response failure;
    std::function<void()> whileSending = [] {};
};

class Delivery : public testing::Test
{
protected:
    void put(const char *method, const QJsonValue &payload)
    {
        ASSERT_TRUE(broker.put(
            till::loyaltyQueue(),
            {{QLatin1String("method"), QLatin1String(method)}, {QLatin1String("payload"), payload}},
            {}));
    }
    static QJsonObject order(const char *name)
    {
        return {{QLatin1String("name"), QLatin1String(name)}};
    }
    till::Deliverer::Outcome deliver()
    {
        return deliverer.deliver([] { return false; }).outcome;
    }
    QueueState state() { return broker.state(till::loyaltyQueue()).value_or(QueueState()); }

    QTemporaryDir directory;
    DBQueueBroker broker{directory.filePath(QStringLiteral("queue.db"))};
    FakeService service;
    lmmindbox::Interface interface;
    till::Deliverer deliverer{broker, interface};
};
