#include "host/dbqueuebroker.h"

#include "host/database.h"

#include <QJsonDocument>
#include <QVariantList>

#include <algorithm>
#include <utility>

template class Singleton<DBQueueBroker>;

namespace {

/// The columns of a message in the order of `messageOf`.
#define MESSAGE_COLUMNS                                                                            \
    "id, queue, CAST(message AS BLOB), tag, queuedAt, tries, deferrals, parked, lastError"

QueuedMessage messageOf(const Database::Row &row)
{
    return {
        .id = row.at(0).toLongLong(),
        .queue = row.at(1).toString(),
        .message = QJsonDocument::fromJson(row.at(2).toByteArray()).object(),
        .tag = row.at(3).toString(),
        .queuedAt = QDateTime::fromMSecsSinceEpoch(row.at(4).toLongLong()).toUTC(),
        .tries = row.at(5).toInt(),
        .deferrals = row.at(6).toInt(),
        .isParked = row.at(7).toBool(),
        .lastError = row.at(8).toString(),
    };
}

/// A null text would be no text to SQLite.
QString kept(const QString &text)
{
    return text.isNull() ? QStringLiteral("") : text;
}

} // namespace

/// What the broker keeps: the file, opened on first use, and how the last call ended.
class DBQueueBroker::Store
{
public:
    explicit Store(const QString &file)
        : database(std::make_unique<Database>(file))
    {}

    /// Runs a statement on one message. Whether there was one.
    bool change(const char *sql, qint64 id, const QVariantList &values)
    {
        const auto changed = database->write(sql, values);
        missing = changed == 0 ? QStringLiteral("there is no such message: %1").arg(id) : QString();
        return changed > 0;
    }

    QList<QueuedMessage> read(const char *sql, const QVariantList &values)
    {
        missing.clear();
        QList<QueuedMessage> messages;
        for (const auto &row : database->read(sql, values).value_or(QList<Database::Row>()))
            messages.append(messageOf(row));
        return messages;
    }

    std::unique_ptr<Database> database;
    QString missing; ///< Set when the last call met no message.
    std::optional<QList<QueuedMessage>> batch;
};

DBQueueBroker::DBQueueBroker(const QString &file)
    : store(std::make_unique<Store>(file))
{}

DBQueueBroker::~DBQueueBroker() = default;

void DBQueueBroker::setFile(const QString &file)
{
    store->database = std::make_unique<Database>(file);
}

bool DBQueueBroker::put(const QString &queue, const QJsonObject &message, const QString &tag)
{
    QueuedMessage queued;
    queued.queue = queue;
    queued.message = message;
    queued.tag = tag;
    queued.queuedAt = QDateTime::currentDateTimeUtc();
    store->missing.clear();
    if (auto &batch = store->batch) {
        batch->append(queued);
        return true;
    }
    return insert(*store->database, queued, 0);
}

void DBQueueBroker::beginBatch()
{
    store->batch.emplace();
}

bool DBQueueBroker::endBatch()
{
    const auto batch = takeBatch();
    if (batch.isEmpty())
        return true;
    store->missing.clear();
    Transaction transaction(*store->database);
    const auto put = [this](const auto &message) { return insert(*store->database, message, 0); };
    return transaction.begun() && std::all_of(batch.begin(), batch.end(), put) &&
           transaction.commit();
}

QList<QueuedMessage> DBQueueBroker::takeBatch()
{
    return std::exchange(store->batch, std::nullopt).value_or(QList<QueuedMessage>());
}

bool DBQueueBroker::insert(Database &database, const QueuedMessage &message, qint64 receipt)
{
    // Cast, so that neither Qt nor SQLite turns the text into another encoding and back.
    const auto json = QJsonDocument(message.message).toJson(QJsonDocument::Compact);
    return database
        .write("INSERT INTO messages (queue, message, tag, queuedAt, parked, lastError, receipt) "
               "VALUES (?, CAST(? AS TEXT), ?, ?, ?, ?, ?)",
               {kept(message.queue), json, kept(message.tag), message.queuedAt.toMSecsSinceEpoch(),
                message.isParked ? 1 : 0, kept(message.lastError),
                receipt > 0 ? QVariant(receipt) : QVariant()})
        .has_value();
}

std::optional<QueuedMessage> DBQueueBroker::next(const QString &queue, qint64 after)
{
    const auto messages = store->read("SELECT " MESSAGE_COLUMNS " FROM messages WHERE queue = ? "
                                      "AND parked = 0 AND id > ? ORDER BY id LIMIT 1",
                                      {queue, after});
    return messages.isEmpty() ? std::nullopt : std::optional(messages.constFirst());
}

QList<QueuedMessage> DBQueueBroker::waiting(const QString &queue, int limit)
{
    return store->read("SELECT " MESSAGE_COLUMNS " FROM messages WHERE queue = ? AND parked = 0 "
                       "ORDER BY id LIMIT ?",
                       {queue, std::max(limit, 0)});
}

bool DBQueueBroker::remove(qint64 id)
{
    return store->change("DELETE FROM messages WHERE id = ?", id, {id});
}

bool DBQueueBroker::removeAll(const QList<qint64> &ids)
{
    store->missing.clear();
    Transaction transaction(*store->database);
    const auto removed = [this](qint64 id) {
        return store->database->write("DELETE FROM messages WHERE id = ?", {id}).has_value();
    };
    return transaction.begun() && std::all_of(ids.begin(), ids.end(), removed) &&
           transaction.commit();
}

bool DBQueueBroker::noteFailure(qint64 id, const QString &reason, int deferrals)
{
    return store->change("UPDATE messages SET tries = tries + 1, lastError = ?, deferrals = ? "
                         "WHERE id = ? AND parked = 0",
                         id, {kept(reason), deferrals, id});
}

bool DBQueueBroker::park(qint64 id, const QString &reason)
{
    return store->change(
        "UPDATE messages SET parked = 1, lastError = ? WHERE id = ? AND parked = 0", id,
        {kept(reason), id});
}

QList<QueuedMessage> DBQueueBroker::parked(const QString &queue)
{
    return store->read("SELECT " MESSAGE_COLUMNS " FROM messages WHERE queue = ? AND parked = 1 "
                       "ORDER BY id",
                       {queue});
}

bool DBQueueBroker::unpark(qint64 id)
{
    return store->change("UPDATE messages SET parked = 0, tries = 0, deferrals = 0 "
                         "WHERE id = ? AND parked = 1",
                         id, {id});
}

std::optional<QueueState> DBQueueBroker::state(const QString &queue)
{
    store->missing.clear();
    const auto counts = store->database->read(
        "SELECT parked, count(*) FROM messages WHERE queue = ? GROUP BY parked", {queue});
    if (!counts)
        return std::nullopt;
    QueueState state;
    for (const auto &row : *counts)
        (row.at(0).toInt() == 0 ? state.waiting : state.parked) = row.at(1).toLongLong();
    state.oldest = first(queue);
    return lastError().isEmpty() ? std::optional(state) : std::nullopt;
}

QString DBQueueBroker::lastError() const
{
    return store->missing.isEmpty() ? store->database->lastError() : store->missing;
}

bool DBQueueBroker::isGone() const
{
    return !store->missing.isEmpty();
}

QString DBQueueBroker::file() const
{
    return store->database->file();
}
