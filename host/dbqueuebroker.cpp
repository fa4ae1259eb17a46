#include "host/dbqueuebroker.h"

#include "host/queuestore.h"

#include <QJsonDocument>
#include <QSqlError>
#include <QVariantList>

#include <algorithm>
#include <utility>

template class Singleton<DBQueueBroker>;

using Statement = QueueStore::Statement;

/// What the broker keeps: the file, opened on first use, and how the last call ended.
class DBQueueBroker::Store
{
public:
    /// Runs a statement. Null after a failure, which closes the file, so that the next call finds
    /// it afresh once the cause has gone.
    QSqlQuery *run(Statement statement, const QVariantList &values);
    /// Runs a statement on one message. Whether there was one.
    bool change(Statement statement, qint64 id, const QVariantList &values);
    std::optional<QList<QueuedMessage>> read(Statement statement, const QVariantList &values);
    /// Ends a query whose rows were read. Whether there were no more than those.
    bool finish(QSqlQuery &query);

    QString file;
    QString error;
    QueueStore database;
    std::optional<QList<QVariantList>> batch; ///< The values of the messages collected.

private:
    QSqlQuery *fail(const QString &reason);
};

QSqlQuery *DBQueueBroker::Store::run(Statement statement, const QVariantList &values)
{
    error.clear();
    if (file.isEmpty())
        return fail(QStringLiteral("no file is set"));
    if (!database.isOpen() && !database.open(file))
        return fail(database.getError());
    if (auto *const query = database.run(statement, values))
        return query;
    const auto reason = database.getError();
    database.close();
    return fail(reason);
}

bool DBQueueBroker::Store::change(Statement statement, qint64 id, const QVariantList &values)
{
    auto *const query = run(statement, values);
    if (!query)
        return false;
    const auto found = query->numRowsAffected() > 0;
    query->finish();
    if (!found)
        fail(QStringLiteral("there is no such message: %1").arg(id));
    return found;
}

std::optional<QList<QueuedMessage>> DBQueueBroker::Store::read(Statement statement,
                                                               const QVariantList &values)
{
    auto *const query = run(statement, values);
    if (!query)
        return std::nullopt;
    QList<QueuedMessage> messages;
    while (query->next()) {
        const auto json = query->value(1).toString().toUtf8();
        messages.append(
            {.id = query->value(0).toLongLong(),
             .message = QJsonDocument::fromJson(json).object(),
             .tag = query->value(2).toString(),
             .queuedAt = QDateTime::fromMSecsSinceEpoch(query->value(3).toLongLong()).toUTC(),
             .tries = query->value(4).toInt(),
             .lastError = query->value(5).toString()});
    }
    return finish(*query) ? std::optional(messages) : std::nullopt;
}

bool DBQueueBroker::Store::finish(QSqlQuery &query)
{
    const auto failure = query.lastError();
    query.finish();
    if (!failure.isValid())
        return true;
    database.close();
    fail(failure.text());
    return false;
}

QSqlQuery *DBQueueBroker::Store::fail(const QString &reason)
{
    error = file.isEmpty() ? reason : QStringLiteral("%1: the queue: %2").arg(file, reason);
    return nullptr;
}

DBQueueBroker::DBQueueBroker()
    : store(std::make_unique<Store>())
{}

DBQueueBroker::DBQueueBroker(const QString &file)
    : DBQueueBroker()
{
    store->file = file;
}

DBQueueBroker::~DBQueueBroker() = default;

void DBQueueBroker::setFile(const QString &file)
{
    store->database.close();
    store->file = file;
}

bool DBQueueBroker::put(const QString &queue, const QJsonObject &message, const QString &tag)
{
    const auto json = QString::fromUtf8(QJsonDocument(message).toJson(QJsonDocument::Compact));
    // A null text would be no text to SQLite.
    const auto kept = [](const QString &text) { return text.isNull() ? QStringLiteral("") : text; };
    const QVariantList values{kept(queue), json, kept(tag), QDateTime::currentMSecsSinceEpoch()};
    if (store->batch) {
        store->batch->append(values);
        return true;
    }
    return store->run(Statement::Put, values) != nullptr;
}

void DBQueueBroker::beginBatch()
{
    store->batch.emplace();
}

bool DBQueueBroker::endBatch()
{
    const auto batch = std::exchange(store->batch, std::nullopt).value_or(QList<QVariantList>());
    store->error.clear();
    if (batch.isEmpty())
        return true;
    // A failure closes the file, which undoes the transaction.
    const auto put = [this](const QVariantList &values) {
        return store->run(Statement::Put, values) != nullptr;
    };
    return store->run(Statement::Begin, {}) && std::all_of(batch.begin(), batch.end(), put) &&
           store->run(Statement::Commit, {});
}

std::optional<QueuedMessage> DBQueueBroker::first(const QString &queue)
{
    const auto messages = waiting(queue, 1);
    return messages.isEmpty() ? std::nullopt : std::optional(messages.constFirst());
}

QList<QueuedMessage> DBQueueBroker::waiting(const QString &queue, int limit)
{
    return store->read(Statement::Waiting, {queue, std::max(limit, 0)})
        .value_or(QList<QueuedMessage>());
}

bool DBQueueBroker::remove(qint64 id)
{
    return store->change(Statement::Remove, id, {id});
}

bool DBQueueBroker::noteFailure(qint64 id, const QString &reason)
{
    return store->change(Statement::NoteFailure, id, {reason, id});
}

bool DBQueueBroker::park(qint64 id, const QString &reason)
{
    return store->change(Statement::Park, id, {reason, id});
}

QList<QueuedMessage> DBQueueBroker::parked(const QString &queue)
{
    return store->read(Statement::Parked, {queue}).value_or(QList<QueuedMessage>());
}

bool DBQueueBroker::unpark(qint64 id)
{
    return store->change(Statement::Unpark, id, {id});
}

std::optional<QueueState> DBQueueBroker::state(const QString &queue)
{
    QueueState state;
    auto *const counts = store->run(Statement::Count, {queue});
    if (!counts)
        return std::nullopt;
    while (counts->next()) {
        const auto number = counts->value(1).toLongLong();
        (counts->value(0).toInt() == 0 ? state.waiting : state.parked) = number;
    }
    if (!store->finish(*counts))
        return std::nullopt;
    state.oldest = first(queue);
    return store->error.isEmpty() ? std::optional(state) : std::nullopt;
}

QString DBQueueBroker::lastError() const
{
    return store->error;
}

QString DBQueueBroker::file() const
{
    return store->file;
}
