#include "benchmarks/comparison.h"
#include "benchmarks/setup.h"

#include "converter/converter.h"
#include "interface/interface.h"
#include "till/core/deliverer.h"

#include <host/abstractdocument.h>
#include <host/basicloyaltysystem.h>
#include <host/config.h>
#include <host/dbqueuebroker.h>
#include <host/session.h>

#include <QDateTime>
#include <QFile>
#include <QJsonDocument>

#include <sqlite3.h>

#include <algorithm>
#include <utility>

namespace bench {

namespace {

constexpr int linesOfMessage = 5;
constexpr int atATime = 50; ///< Messages delivered in one sample.

/// The floor of every work on the queue: the queue's file and its pragmas, SQLite itself and its
/// prepared statements.
class BareQueue
{
public:
    /// Opens the file, which is created the way the queue does it when it is missing.
    explicit BareQueue(const QString &file);
    ~BareQueue();
    Q_DISABLE_COPY_MOVE(BareQueue)

    bool insert(const QByteArray &message);
    bool remove(qint64 id);
    /// For many inserts in one go: "BEGIN", "COMMIT".
    bool execute(const char *sql);

private:
    sqlite3 *database = nullptr;
    sqlite3_stmt *insertion = nullptr;
    sqlite3_stmt *removal = nullptr;
};

BareQueue::BareQueue(const QString &file)
{
    (void)DBQueueBroker(file).state(till::loyaltyQueue());
    sqlite3_open(QFile::encodeName(file).constData(), &database);
    execute("PRAGMA journal_mode = WAL");
    execute("PRAGMA synchronous = FULL");
    sqlite3_prepare_v2(database,
                       "INSERT INTO messages (queue, message, tag, queuedAt) "
                       "VALUES ('lmmindbox', ?, '', ?)",
                       -1, &insertion, nullptr);
    sqlite3_prepare_v2(database, "DELETE FROM messages WHERE id = ?", -1, &removal, nullptr);
}

BareQueue::~BareQueue()
{
    sqlite3_finalize(insertion);
    sqlite3_finalize(removal);
    sqlite3_close(database);
}

bool BareQueue::insert(const QByteArray &message)
{
    sqlite3_bind_text(insertion, 1, message.constData(), static_cast<int>(message.size()), nullptr);
    sqlite3_bind_int64(insertion, 2, QDateTime::currentMSecsSinceEpoch());
    const auto done = sqlite3_step(insertion) == SQLITE_DONE;
    return sqlite3_reset(insertion) == SQLITE_OK && done;
}

bool BareQueue::remove(qint64 id)
{
    sqlite3_bind_int64(removal, 1, id);
    const auto done = sqlite3_step(removal) == SQLITE_DONE && sqlite3_changes(database) == 1;
    return sqlite3_reset(removal) == SQLITE_OK && done;
}

bool BareQueue::execute(const char *sql)
{
    return sqlite3_exec(database, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

QJsonObject messageOf(const QString &method, const QJsonObject &payload)
{
    return {{QStringLiteral("method"), method}, {QStringLiteral("payload"), payload}};
}

QByteArray toBytes(const QJsonObject &json)
{
    return QJsonDocument(json).toJson(QJsonDocument::Compact);
}

/// A receipt's two payloads: the order's creation and its status.
std::pair<QJsonObject, QJsonObject> payloadsOf(int number)
{
    const auto receipt = makeReceipt(linesOfMessage, number);
    Singleton<Session>::instance()->setCurrentDocument(receipt);
    lmmindbox::Converter converter;
    lmmindbox::Customer customer;
    customer.mobilePhone = confirmedPhone;
    auto creation = converter.getOrderPayload(customer, receipt->getTotal()).first;
    auto change = converter.getChangeOrderStatusPayload({});
    Singleton<Session>::instance()->setCurrentDocument(nullptr);
    return {creation, change};
}

void put(benchmark::State &state, Setup &setup)
{
    const auto queue = till::loyaltyQueue();
    const auto message = messageOf(QStringLiteral("change"), payloadsOf(1).second);
    const auto bytes = toBytes(message);
    DBQueueBroker broker(setup.newFile());
    BareQueue bare(setup.newFile());
    compare(
        state, 1, [&] { return broker.put(queue, message, {}); },
        [&] { return bare.insert(bytes); });
}

/// A queue's file to deliver from, and the receipts whose messages fill it, two of each.
class FilledQueue
{
public:
    FilledQueue(const QString &file, int firstReceipt)
        : file(file)
        , queue(file)
        , receipt(firstReceipt)
    {}
    /// Puts the messages of so many receipts behind the others.
    void add(int receipts)
    {
        queue.execute("BEGIN");
        for (const auto end = receipt + receipts; receipt < end; ++receipt) {
            const auto payloads = payloadsOf(receipt);
            queue.insert(toBytes(messageOf(QStringLiteral("create"), payloads.first)));
            queue.insert(toBytes(messageOf(QStringLiteral("change"), payloads.second)));
        }
        queue.execute("COMMIT");
    }

    const QString file;

private:
    BareQueue queue;
    int receipt;
};

/// What is sent for the messages of so many receipts.
std::vector<SentRequest> requestsOf(int firstReceipt, int receipts)
{
    std::vector<SentRequest> requests;
    for (int i = 0; i < receipts; ++i) {
        const auto payloads = payloadsOf(firstReceipt + i);
        requests.push_back(record([&](lmmindbox::Interface &interface) {
            (void)interface.createAuthorizedOrder(payloads.first, true);
        }));
        requests.push_back(record([&](lmmindbox::Interface &interface) {
            (void)interface.changeOrderStatus(payloads.second, true);
        }));
    }
    return requests;
}

/// Delivers from a queue with so many messages, some at a time in turn with as many bare exchanges
/// and deletes; each time is one iteration, before which the queues are filled up again.
void deliver(benchmark::State &state, Setup &setup)
{
    constexpr int receiptsAtATime = atATime / 2;
    constexpr int firstOfFloor = 500'000; // far above ours
    const auto waiting = static_cast<int>(state.range(0));
    setup.resetSimulator();
    FilledQueue filled(setup.newFile(), 1);
    filled.add((waiting - atATime) / 2);
    FilledQueue bareFilled(setup.newFile(), firstOfFloor);
    bareFilled.add((waiting - atATime) / 2);

    DBQueueBroker broker(filled.file);
    lmmindbox::Interface service;
    till::Deliverer deliverer(broker, service);
    const auto ours = [&] {
        auto left = atATime;
        return deliverer.deliver([&left] { return left-- == 0; }).settled == atATime;
    };
    BareQueue bareQueue(bareFilled.file);
    BareExchange bareExchange;
    std::vector<SentRequest> requests;
    const auto floor = [&, id = 0]() mutable {
        return std::ranges::all_of(requests, [&](const auto &request) {
            return bareExchange.post(request) && bareQueue.remove(++id);
        });
    };
    const auto prepare = [&, receipt = firstOfFloor]() mutable {
        filled.add(receiptsAtATime);
        bareFilled.add(receiptsAtATime);
        requests = requestsOf(receipt, receiptsAtATime);
        receipt += receiptsAtATime;
    };
    compare(state, 1, ours, floor, prepare);
    for (auto &[name, counter] : state.counters)
        counter.value /= atATime;
    if (!broker.parked(till::loyaltyQueue()).isEmpty())
        fail(state, "messages were refused");
    else if (setup.countSettledOrders() != atATime * state.iterations())
        fail(state, "the simulator lacks orders");
}

/// The floor stores the two messages one by one, or both in one transaction as the till does.
void commitWhileDown(benchmark::State &state, Setup &setup, bool oneTransaction)
{
    auto *const config = Singleton<Config>::instance();
    const auto key = QStringLiteral("LmMindbox:url");
    const auto url = config->getText(key);
    // Nothing listens on the port for Internet-wide multiplexing.
    config->set(key, QStringLiteral("http://127.0.0.1:1/v3/operations/sync"));
    auto *const broker = Singleton<DBQueueBroker>::instance();
    const auto fileBefore = broker->file();
    broker->setFile(setup.newFile());

    const LoadedPlugin plugin;
    const auto receipt = makeReceipt(linesOfMessage, 1);
    plugin.attach(receipt);
    plugin.system()->commit(receipt);
    const auto left = broker->waiting(till::loyaltyQueue(), 2);
    BareQueue bare(setup.newFile());
    if (left.size() != 2)
        fail(state, "the messages are not in the queue");
    else
        compare(
            state, 1,
            [&] {
                broker->beginBatch();
                return plugin.system()->commit(receipt) && broker->endBatch();
            },
            [&, creation = toBytes(left[0].message), change = toBytes(left[1].message)] {
                if (!oneTransaction)
                    return bare.insert(creation) && bare.insert(change);
                return bare.execute("BEGIN") && bare.insert(creation) && bare.insert(change) &&
                       bare.execute("COMMIT");
            });
    const auto queued = broker->state(till::loyaltyQueue());
    if (!queued || queued->waiting != 2 * (state.iterations() + 1))
        fail(state, "the queue lacks messages");
    broker->setFile(fileBefore);
    config->set(key, url);
}

} // namespace

void registerQueue(Setup &setup)
{
    benchmark::RegisterBenchmark("put", [&setup](auto &state) {
        put(state, setup);
    })->UseManualTime();
    benchmark::RegisterBenchmark("commitWhileDown/twoInserts", [&setup](auto &state) {
        commitWhileDown(state, setup, false);
    })->UseManualTime();
    benchmark::RegisterBenchmark("commitWhileDown/oneTransaction", [&setup](auto &state) {
        commitWhileDown(state, setup, true);
    })->UseManualTime();
    for (auto waiting = 100; waiting <= (setup.isQuick() ? 100 : 100'000); waiting *= 10) {
        benchmark::RegisterBenchmark("deliver", [&setup](auto &state) { deliver(state, setup); })
            ->Arg(waiting)
            ->Iterations(setup.isQuick() ? 2 : 200)
            ->UseManualTime();
    }
}

} // namespace bench
