#include "benchmarks/comparison.h"
#include "benchmarks/setup.h"

#include "converter/converter.h"
#include "interface/interface.h"
#include "till/deliverer.h"

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
constexpr int mostDelivered = 10'000;

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
    (void)DBQueueBroker(file).state(QStringLiteral("lmmindbox"));
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
    const auto queue = QStringLiteral("lmmindbox");
    const auto message = messageOf(QStringLiteral("change"), payloadsOf(1).second);
    const auto bytes = toBytes(message);
    DBQueueBroker broker(setup.newFile());
    BareQueue bare(setup.newFile());
    compare(
        state, 1, [&] { return broker.put(queue, message, {}); },
        [&] { return bare.insert(bytes); });
}

/// Fills a queue with so many messages, two of each receipt; returns what is sent for the first
/// `recorded` of them.
std::vector<SentRequest> fill(BareQueue &queue, int count, int firstReceipt, int recorded)
{
    std::vector<SentRequest> requests;
    queue.execute("BEGIN");
    for (int i = 0; i < count / 2; ++i) {
        const auto payloads = payloadsOf(firstReceipt + i);
        queue.insert(toBytes(messageOf(QStringLiteral("create"), payloads.first)));
        queue.insert(toBytes(messageOf(QStringLiteral("change"), payloads.second)));
        if (2 * i >= recorded)
            continue;
        requests.push_back(record([&](lmmindbox::Interface &interface) {
            (void)interface.createAuthorizedOrder(payloads.first, true);
        }));
        requests.push_back(record([&](lmmindbox::Interface &interface) {
            (void)interface.changeOrderStatus(payloads.second, true);
        }));
    }
    queue.execute("COMMIT");
    return requests;
}

/// Delivers from a queue with so many messages, some at a time in turn with as many bare exchanges
/// and deletes; each time is one iteration.
void deliver(benchmark::State &state, Setup &setup)
{
    const auto waiting = static_cast<int>(state.range(0));
    setup.resetSimulator();
    const auto file = setup.newFile();
    {
        BareQueue filled(file);
        fill(filled, waiting, 1, 0);
    }
    BareQueue bareQueue(setup.newFile());
    const auto requests = fill(bareQueue, waiting, waiting + 1, mostDelivered);
    BareExchange bareExchange;
    DBQueueBroker broker(file);
    lmmindbox::Interface service;
    till::Deliverer deliverer(broker, service);

    const auto ours = [&] {
        auto left = atATime;
        return deliverer.deliver([&left] { return left-- == 0; }).settled == atATime;
    };
    const auto floor = [&, next = 0]() mutable {
        for (const auto end = next + atATime; next < end; ++next) {
            if (!bareExchange.post(requests.at(static_cast<size_t>(next))) ||
                !bareQueue.remove(next + 1))
                return false;
        }
        return true;
    };
    compare(state, 1, ours, floor);
    for (auto &[name, counter] : state.counters)
        counter.value /= atATime;
}

void commitWhileDown(benchmark::State &state, Setup &setup)
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
    const auto left = broker->waiting(QStringLiteral("lmmindbox"), 2);
    BareQueue bare(setup.newFile());
    if (left.size() != 2)
        fail(state, "the messages are not in the queue");
    else
        compare(
            state, 1, [&] { return plugin.system()->commit(receipt) && broker->failedPuts() == 0; },
            [&, creation = toBytes(left[0].message), change = toBytes(left[1].message)] {
                return bare.insert(creation) && bare.insert(change);
            });
    broker->setFile(fileBefore);
    config->set(key, url);
}

} // namespace

void registerQueue(Setup &setup)
{
    benchmark::RegisterBenchmark("put", [&setup](auto &state) {
        put(state, setup);
    })->UseManualTime();
    benchmark::RegisterBenchmark("commitWhileDown", [&setup](auto &state) {
        commitWhileDown(state, setup);
    })->UseManualTime();
    for (auto waiting = 100; waiting <= (setup.isQuick() ? 100 : 100'000); waiting *= 10) {
        benchmark::RegisterBenchmark("deliver", [&setup](auto &state) { deliver(state, setup); })
            ->Arg(waiting)
            ->Iterations(std::min(waiting, mostDelivered) / atATime)
            ->UseManualTime();
    }
}

} // namespace bench
