#include "benchmarks/filledstore.h"
#include "benchmarks/setup.h"
#include "benchmarks/tillatwork.h"

#include "converter/converter.h"
#include "interface/interface.h"
#include "model/operationresult.h"
#include "tests/support/fakehttp.h"
#include "till/core/deliverer.h"
#include "till/core/sale.h"

#include <host/abstractdocument.h>
#include <host/dbqueuebroker.h>
#include <host/session.h>

#include <functional>

/// What valgrind counts the instructions of: scripts/bench names it and the copies that a compiler
/// makes of it for one kind of call.
extern "C" __attribute__((noinline)) void countedCall(const std::function<void()> &call)
{
    call();
}

namespace bench {

namespace {

constexpr int times = 100;

void countTimes(const std::function<void()> &call)
{
    // What is done but once is not counted.
    for (int i = 0; i < times; ++i)
        call();
    for (int i = 0; i < times; ++i)
        countedCall(call);
}

void countLookUp(Setup & /*setup*/)
{
    lmmindbox::Interface service;
    countTimes([&] { (void)service.getCustomer(confirmedPhone); });
}

void countBareExchange(Setup & /*setup*/)
{
    BareExchange bare;
    const auto sent = record([](auto &service) { (void)service.getCustomer(confirmedPhone); });
    countTimes([&] { (void)bare.post(sent); });
}

void countPayload(Setup & /*setup*/)
{
    const auto receipt = makeReceipt(100, 1);
    Singleton<Session>::instance()->setCurrentDocument(receipt);
    lmmindbox::Converter converter;
    lmmindbox::Customer customer;
    customer.mobilePhone = confirmedPhone;
    countTimes([&] {
        const auto payload = converter.getOrderPayload(customer, receipt->getTotal()).first;
        (void)QJsonDocument(payload).toJson(QJsonDocument::Compact);
    });
    Singleton<Session>::instance()->setCurrentDocument(nullptr);
}

void countAnswer(Setup & /*setup*/)
{
    FakeRestClient client;
    client.answer = answerOfSize(1 << 10);
    const lmmindbox::Interface service;
    countTimes([&] { (void)lmmindbox::GetCustomerResult(service.getRequestResult()).success(); });
}

/// As many messages as calls of the others, because they are removed together.
void countDelivery(Setup &setup)
{
    const auto directory = setup.newFile();
    FilledStore filled(directory, 1);
    if (!filled.add(times, true)) // two messages each
        return;
    DBQueueBroker broker(till::Store::fileIn(directory));
    lmmindbox::Interface service;
    till::Deliverer deliverer(broker, service);
    const auto deliver = [&] {
        auto left = times;
        (void)deliverer.deliver([&left] { return left-- == 0; });
    };
    deliver();
    countedCall(deliver);
}

void countCommit(Setup &setup)
{
    const ServiceElsewhere down;
    TillAtWork till(setup);
    for (int i = 0; i < 2 * times; ++i) {
        till.sell(usualLines);
        if (i < times)
            till.sale().commit();
        else
            countedCall([&] { till.sale().commit(); });
    }
}

void countIdentification(Setup &setup)
{
    TillAtWork till(setup);
    till.sell(usualLines);
    countTimes([&] { till.sale().enterCard(confirmedPhone); });
}

} // namespace

bool count(const QString &what, Setup &setup)
{
    const QHash<QString, void (*)(Setup &)> known{
        {QStringLiteral("lookUp"), countLookUp},
        {QStringLiteral("bareExchange"), countBareExchange},
        {QStringLiteral("payload"), countPayload},
        {QStringLiteral("answer"), countAnswer},
        {QStringLiteral("delivery"), countDelivery},
        {QStringLiteral("commit"), countCommit},
        {QStringLiteral("identification"), countIdentification}};
    const auto call = known.value(what);
    if (call)
        call(setup);
    return call != nullptr;
}

} // namespace bench
