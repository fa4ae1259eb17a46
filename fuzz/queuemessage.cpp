#include "fuzz/fuzzing.h"
#include "tests/support/fakehttp.h"

#include "interface/interface.h"
#include "till/core/deliverer.h"
#include "till/office/commands.h"

#include <host/dbqueuebroker.h>

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QUrlQuery>

#include <sstream>

namespace {

const auto pointOfContact = QLatin1String("pointOfContact");

/// A queue with its deliverer, and a service that answers as it is told.
class Delivery
{
public:
    /// Leaves one message in the queue whose text is exactly these bytes.
    void put(const QByteArray &text)
    {
        require(broker.put(till::loyaltyQueue(), {}, {}));
        // Past the broker, which writes nothing but JSON objects.
        static const auto database = openDatabase(broker.file());
        QSqlQuery update(database);
        require(update.prepare(QStringLiteral("UPDATE messages SET message = CAST(? AS TEXT)")));
        update.addBindValue(text);
        require(update.exec());
    }
    /// One round while the service answers that way. \return How many messages it settled.
    int deliver(int httpCode, const QByteArray &answer)
    {
        http.httpCode = httpCode;
        http.answer = answer;
        const auto round = deliverer.deliver([] { return false; });
        const auto isEmptied = round.outcome == till::Deliverer::Outcome::Emptied;
        require(isEmptied || round.outcome == till::Deliverer::Outcome::Unreachable);
        const auto state = broker.state(till::loyaltyQueue());
        require(state && isEmptied == till::textOf(*state).startsWith(QLatin1String("waiting: 0")));
        return round.settled;
    }
    /// What the integrator reads and does about a parked message.
    void retryParked()
    {
        std::ostringstream output;
        const auto run = [&](const QStringList &arguments) {
            return till::runQueueCommand(broker, output, arguments, false);
        };
        require(run({QStringLiteral("parked")}) != 1);
        require(run({QStringLiteral("retry"), QStringLiteral("all")}) == 0);
    }

    FakeRestClient http;
    DBQueueBroker broker{scratchDirectory() + QLatin1String("/till.db")};

private:
    static QSqlDatabase openDatabase(const QString &file)
    {
        auto database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"));
        database.setDatabaseName(file);
        require(database.open());
        return database;
    }

    lmmindbox::Interface service;
    till::Deliverer deliverer{broker, service};
};

} // namespace

/// A message is never lost: it waits without an answer, is parked when refused, and leaves only
/// when the service has accepted it, unchanged.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    // Never destroyed: at the program's end Qt's list of databases goes before it.
    static auto &delivery = *new Delivery;
    delivery.put(bytesOf({data, size}));
    const auto message = delivery.broker.first(till::loyaltyQueue());
    require(message.has_value());

    const auto isMalformed = delivery.deliver(0, {}) == 1;
    require(isMalformed || delivery.deliver(400, R"({"status":"ProtocolError"})") == 1);
    delivery.retryParked();
    require(delivery.deliver(
                200, R"({"status":"Success","order":{"processingStatus":"Processed"}})") == 1);

    const auto parked = delivery.broker.parked(till::loyaltyQueue());
    require(parked.size() == (isMalformed ? 1 : 0));
    if (isMalformed) {
        require(delivery.broker.remove(parked.constFirst().id));
        return 0;
    }
    auto sent = delivery.http.sentBody;
    auto expected = message->message.value(QLatin1String("payload")).toObject();
    sent.remove(pointOfContact);
    expected.remove(pointOfContact);
    require(sent == expected);
    const auto method = message->message.value(QLatin1String("method")).toString();
    require(QUrlQuery(delivery.http.sentUrl).queryItemValue(QStringLiteral("operation")) ==
            (method == QLatin1String("create") ? QLatin1String("Offline.CreateAuthorizedOrder")
                                               : QLatin1String("Offline.ChangeStatus")));
    return 0;
}
