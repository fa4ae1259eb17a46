#include "benchmarks/comparison.h"
#include "benchmarks/setup.h"

#include "interface/interface.h"

#include <host/abstractdocument.h>
#include <host/basicloyaltysystem.h>
#include <host/session.h>

#include <QEventLoop>
#include <QJsonArray>
#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QNetworkReply>

#include <algorithm>
#include <memory>

namespace bench {

namespace {

SentRequest lookUp(const QString &phone)
{
    return record([&phone](auto &interface) { (void)interface.getCustomer(phone); });
}

SentRequest letter(const QString &email)
{
    return record([&email](auto &interface) { (void)interface.emailConfirmationLetter(email); });
}

void getCustomer(benchmark::State &state)
{
    lmmindbox::Interface interface;
    BareExchange bare;
    const auto request = lookUp(confirmedPhone);
    compare(
        state, 1, [&] { return interface.getCustomer(confirmedPhone).customer.found(); },
        [&] { return bare.post(request); });
}

/// The same look-up the usual Qt way: a request of the network access manager, and an event loop
/// until it has finished.
void getCustomerByManager(benchmark::State &state)
{
    BareExchange bare;
    const auto sent = lookUp(confirmedPhone);
    QNetworkAccessManager manager;
    const lmmindbox::Interface interface;
    const auto usual = [&] {
        QNetworkRequest request(QUrl::fromEncoded(sent.url));
        for (auto header = sent.headers.cbegin(); header != sent.headers.cend(); ++header)
            request.setRawHeader(header.key().toUtf8(), header.value().toUtf8());
        const std::unique_ptr<QNetworkReply> reply(manager.post(request, sent.body));
        QEventLoop loop;
        QObject::connect(reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
        loop.exec();
        return interface.getCustomer(QJsonDocument::fromJson(reply->readAll()).object()).found();
    };
    compare(state, 1, usual, [&] { return bare.post(sent); });
}

/// Identifications of a confirmed customer against the bare exchanges given.
void identify(benchmark::State &state, const QString &phone, const QList<SentRequest> &requests)
{
    const LoadedPlugin plugin;
    BareExchange bare;
    plugin.attach(makeReceipt(1, 1));
    compare(
        state, 1, [&] { return plugin.identify(phone); },
        [&] {
            return std::ranges::all_of(requests, [&](const auto &sent) { return bare.post(sent); });
        });
}

/// Identifies the customer of a receipt and commits it, and counts the connections it took. Its
/// status goes later, through the deliverer's own client.
void countConnections(benchmark::State &state, Setup &setup)
{
    for ([[maybe_unused]] auto iteration : state) {
        setup.resetSimulator();
        const LoadedPlugin plugin;
        const auto receipt = makeReceipt(static_cast<int>(state.range(0)), 1);
        plugin.attach(receipt);
        if (!plugin.identify(confirmedPhone) || !plugin.system()->commit(receipt))
            fail(state, "the sale failed");
        const auto dump = setup.dump();
        if (dump[QLatin1String("orders")].toArray().size() != 1)
            fail(state, "the order did not arrive");
        state.counters["connections"] = dump[QLatin1String("connections")].toInt();
    }
}

} // namespace

void registerExchanges(Setup &setup)
{
    benchmark::RegisterBenchmark("getCustomer/client", getCustomer)->UseManualTime();
    benchmark::RegisterBenchmark("getCustomer/networkAccessManager", getCustomerByManager)
        ->UseManualTime();
    const auto add = [](const char *name, const QString &phone,
                        const QList<SentRequest> &requests) {
        benchmark::RegisterBenchmark(name, [=](benchmark::State &state) {
            identify(state, phone, requests);
        })->UseManualTime();
    };
    const auto known = lookUp(confirmedPhone);
    const auto letterToKnown = letter(QStringLiteral("anna01@example.org"));
    add("identify/withoutEmail", phoneWithoutEmail, {lookUp(phoneWithoutEmail)});
    add("identify/withEmailBothExchanges", confirmedPhone, {known, letterToKnown});
    benchmark::RegisterBenchmark("connections",
                                 [&setup](auto &state) { countConnections(state, setup); })
        ->RangeMultiplier(10)
        ->Range(1, 1000)
        ->Iterations(1);
}

} // namespace bench
