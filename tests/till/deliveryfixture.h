#pragma once

#include "tests/support/fakehttp.h"
#include "till/core/deliverer.h"
#include "till/core/store.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <functional>
#include <limits>

using namespace Qt::StringLiterals;

/// A service that answers by the message's name. Keeps the names it received: "+name" for "create"
/// messages and "=name" for "change" messages.
class FakeService : public FakeRestClient
{
public:
    void send(const QUrl &url, const QJsonDocument &document,
              const QHash<QString, QString> &headers) override
    {
        FakeRestClient::send(url, document, headers);
        const auto name = sentBody.value("name"_L1).toString().toStdString();
        const auto isChange = url.query().contains("ChangeStatus"_L1);
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

/// A clock that the test sets.
class FakeClock : private Clock::Source
{
public:
    FakeClock() { Clock::setSource(this); }
    ~FakeClock() override { Clock::setSource(nullptr); }
    Q_DISABLE_COPY_MOVE(FakeClock)

    void pass(std::chrono::milliseconds duration) { passed += duration; }
    /// Sets the time of day, as a person might.
    void jump(std::chrono::milliseconds by) { jumped += by; }

private:
    QDateTime now() override { return begin.addMSecs((passed + jumped).count()); }
    Clock::Time steady() override { return Clock::Time(passed); }

    const QDateTime begin = QDateTime::currentDateTimeUtc();
    std::chrono::milliseconds passed{1};
    std::chrono::milliseconds jumped{0};
};

class Delivery : public testing::Test
{
protected:
    using Outcome = till::Deliverer::Outcome;

    void put(const char *method, const QJsonValue &payload)
    {
        till::QueuedMessage message;
        message.queue = till::loyaltyQueue();
        message.message = {{"method"_L1, QLatin1String(method)}, {"payload"_L1, payload}};
        message.queuedAt = Clock::now();
        ASSERT_TRUE(store.saveReport(store.newReceipt({}, DocumentHeader::sale),
                                     {till::Report::Reported, {}, {}}, {message}));
    }
    static QJsonObject order(const char *name) { return {{"name"_L1, QLatin1String(name)}}; }
    /// Steps until one delivers and parks nothing. \return Its outcome.
    Outcome deliver()
    {
        auto outcome = Outcome::Settled;
        while (outcome == Outcome::Settled)
            outcome = deliverer.step().outcome;
        return outcome;
    }
    qint64 waiting() { return store.deliveryState().waiting; }
    till::QueuedMessage first() { return messages(false).value(0); }
    QList<till::QueuedMessage> messages(bool parked)
    {
        return store.messages(parked, std::numeric_limits<int>::max()).value();
    }

    QTemporaryDir directory;
    till::Store store{directory.path()};
    FakeService service;
    till::Deliverer deliverer{store, directory.path(), {}};
};
