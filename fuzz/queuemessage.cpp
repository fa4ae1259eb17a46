#include "fuzz/fuzzing.h"
#include "tests/support/fakehttp.h"

#include "till/core/deliverer.h"
#include "till/core/store.h"
#include "till/core/storeschema.h"
#include "till/office/commands.h"

#include <QUrlQuery>

#include <sstream>

using namespace Qt::StringLiterals;

namespace {

const auto pointOfContact = "pointOfContact"_L1;

/// A queue with its deliverer, and a service with a chosen answer.
class Delivery
{
public:
    /// Leaves one message in the queue with exactly these bytes as its text.
    void put(const QByteArray &text)
    {
        till::QueuedMessage message;
        message.queue = till::loyaltyQueue();
        require(store.saveReport(receipt, {till::Report::Reported, {}, {}}, {message}).has_value());
        // Written directly, because the store accepts only JSON objects.
        require(database.run("UPDATE messages SET message = ?", {text}).has_value());
    }
    /// Delivers while the service gives that answer. \return How many messages were delivered or
    /// parked.
    int deliver(int httpCode, const QByteArray &answer)
    {
        using Outcome = till::Deliverer::Outcome;
        http.httpCode = httpCode;
        http.answer = answer;
        auto outcome = Outcome::Settled;
        int settled = -1;
        for (; outcome == Outcome::Settled; ++settled)
            outcome = deliverer.step().outcome;
        require(outcome == Outcome::Empty || outcome == Outcome::Unreachable);
        require((outcome == Outcome::Empty) == (store.deliveryState().waiting == 0));
        return settled;
    }
    /// Lists and retries a parked message as an engineer would.
    void retryParked()
    {
        std::ostringstream output;
        const auto run = [&](const QStringList &arguments) {
            return till::runQueueCommand(store, output, arguments, false);
        };
        require(run({u"parked"_s}) != 1);
        require(run({u"retry"_s, u"all"_s}) == 0);
    }

    FakeRestClient http;
    till::Store store{scratchDirectory()};

private:
    Database database{till::Store::fileIn(scratchDirectory()), till::storeSchema()};
    QSharedPointer<AbstractDocument> receipt = store.newReceipt({}, DocumentHeader::sale);
    till::Deliverer deliverer{store, scratchDirectory(), {}};
};

} // namespace

/// A message is never lost or changed: it waits without an answer, is parked when refused, and is
/// removed only when the service has accepted it.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static Delivery delivery;
    delivery.put(bytesOf({data, size}));
    const auto message = delivery.store.nextMessage().value();
    require(message.has_value());

    const auto isMalformed = delivery.deliver(0, {}) == 1;
    require(isMalformed || delivery.deliver(400, R"({"status":"ProtocolError"})") == 1);
    delivery.retryParked();
    require(delivery.deliver(
                200, R"({"status":"Success","order":{"processingStatus":"Processed"}})") == 1);

    const auto parked = delivery.store.messages(true, 9).value();
    require(parked.size() == (isMalformed ? 1 : 0));
    if (isMalformed)
        return 0; // the next report replaces it
    auto sent = delivery.http.sentBody;
    auto expected = message->message.value("payload"_L1).toObject();
    sent.remove(pointOfContact);
    expected.remove(pointOfContact);
    require(sent == expected);
    const auto method = message->message.value("method"_L1).toString();
    require(
        QUrlQuery(delivery.http.sentUrl).queryItemValue(u"operation"_s) ==
        (method == "create"_L1 ? "Offline.CreateAuthorizedOrder"_L1 : "Offline.ChangeStatus"_L1));
    return 0;
}
