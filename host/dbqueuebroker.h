#pragma once

#include "host/export.h"
#include "host/singleton.h"

#include <QDateTime>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <memory>
#include <optional>

class Database;

/// A message of a queue as the broker keeps it.
struct QueuedMessage
{
    qint64 id = 0;
    QString queue;
    QJsonObject message; ///< Empty when the file holds something else than a JSON object.
    QString tag;
    QDateTime queuedAt;    ///< UTC.
    int tries = 0;         ///< Failed deliveries so far.
    int deferrals = 0;     ///< How many of those the service has put off.
    bool isParked = false; ///< Out of the way until somebody puts it back.
    QString lastError;     ///< Of the last failed delivery, or the reason for parking.
};

/// How a queue stands.
struct QueueState
{
    qint64 waiting = 0;
    qint64 parked = 0;
    std::optional<QueuedMessage> oldest; ///< The waiting message that is next.
};

/// Persistent queues of JSON messages in one SQLite file, a till's store (see `Database`).
///
/// Messages leave a queue in the order they came. A message is on disk when `put` returns true and
/// stays until `remove`. A parked message is out of the way but kept, with the reason. A file that
/// cannot be used is left as it is, and every call fails with `lastError` set.
///
/// One broker belongs to one thread; brokers of several threads or processes share a file.
class HOST_EXPORT DBQueueBroker
{
public:
    /// A broker for the file given; its directory is created (mode 0700) when missing. Without a
    /// file every call fails until `setFile`.
    explicit DBQueueBroker(const QString &file = {});
    ~DBQueueBroker();
    Q_DISABLE_COPY_MOVE(DBQueueBroker)

    /// Closes what is open; the next call opens the file given. Empty for none.
    void setFile(const QString &file);

    /// Stores a message at the end of a queue. `tag` is kept with it and means nothing here.
    bool put(const QString &queue, const QJsonObject &message, const QString &tag);
    /// From here on a `put` only collects its message and answers true, until `endBatch` or
    /// `takeBatch`. For messages that make no sense one without the other, put by somebody who does
    /// not look at the answer.
    void beginBatch();
    /// Stores what was collected, all of it or nothing. \return Whether it is on disk; true when
    /// nothing was put.
    bool endBatch();
    /// Gives out what was collected, for a host that stores it itself.
    QList<QueuedMessage> takeBatch();
    /// Stores a message, as part of the transaction under way if there is one. `receipt` is the row
    /// of the receipt that it belongs to, 0 for none.
    static bool insert(Database &database, const QueuedMessage &message, qint64 receipt);

    /// The waiting message that comes after the one of that number; nothing when there is none or
    /// the file cannot be read.
    std::optional<QueuedMessage> next(const QString &queue, qint64 after);
    /// The waiting message that has come first; nothing as with `next`.
    std::optional<QueuedMessage> first(const QString &queue) { return next(queue, 0); }
    /// Up to `limit` waiting messages in order, without taking them; none when the file cannot be
    /// read, which `lastError` tells from an empty queue.
    QList<QueuedMessage> waiting(const QString &queue, int limit);
    /// Removes a delivered message, parked or not. This and the following calls answer false for a
    /// number that no such message has.
    bool remove(qint64 id);
    /// Removes delivered messages in one transaction; numbers that no message has do not matter.
    bool removeAll(const QList<qint64> &ids);
    /// Counts a failed delivery of a waiting message and keeps it where it is. `deferrals` is how
    /// often the service has put it off by now.
    bool noteFailure(qint64 id, const QString &reason, int deferrals);
    /// Puts a waiting message aside with the reason; the ones behind it move up.
    bool park(qint64 id, const QString &reason);
    /// All that are put aside, in the order they came; none as with `waiting`.
    QList<QueuedMessage> parked(const QString &queue);
    /// Puts a parked message back at its old place in the queue, its tries counted anew.
    bool unpark(qint64 id);

    /// Counts and the next message; nothing when the file cannot be read.
    std::optional<QueueState> state(const QString &queue);

    /// Why the last call failed, in words for the integrator; empty after a success.
    QString lastError() const;
    /// Whether the last call failed only because no such message waits, or is parked, any longer.
    bool isGone() const;
    /// The file, as configured.
    QString file() const;

private:
    class Store;
    std::unique_ptr<Store> store;
};

extern template class HOST_EXPORT Singleton<DBQueueBroker>;
