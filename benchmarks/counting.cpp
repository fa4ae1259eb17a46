#include "benchmarks/setup.h"

#include "converter/converter.h"
#include "interface/interface.h"
#include "model/operationresult.h"
#include "tests/support/fakehttp.h"

#include <host/abstractdocument.h>
#include <host/session.h>

#include <functional>

/// What valgrind counts the instructions of: scripts/bench names it.
extern "C" __attribute__((noinline)) void countedCall(const std::function<void()> &call)
{
    call();
}

namespace bench {

namespace {

void countTimes(const std::function<void()> &call)
{
    // What is done but once is not counted.
    constexpr int times = 100;
    for (int i = 0; i < times; ++i)
        call();
    for (int i = 0; i < times; ++i)
        countedCall(call);
}

void countLookUp()
{
    lmmindbox::Interface service;
    countTimes([&] { (void)service.getCustomer(confirmedPhone); });
}

void countBareExchange()
{
    BareExchange bare;
    const auto sent = record([](auto &service) { (void)service.getCustomer(confirmedPhone); });
    countTimes([&] { (void)bare.post(sent); });
}

void countPayload()
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

void countAnswer()
{
    FakeRestClient client;
    client.answer = answerOfSize(1 << 10);
    const lmmindbox::Interface service;
    countTimes([&] { (void)lmmindbox::GetCustomerResult(service.getRequestResult()).success(); });
}

} // namespace

bool count(const QString &what)
{
    const QHash<QString, void (*)()> known{{QStringLiteral("lookUp"), countLookUp},
                                           {QStringLiteral("bareExchange"), countBareExchange},
                                           {QStringLiteral("payload"), countPayload},
                                           {QStringLiteral("answer"), countAnswer}};
    const auto call = known.value(what);
    if (call)
        call();
    return call != nullptr;
}

} // namespace bench
