#pragma once

#include "host/export.h"
#include "host/singleton.h"

#include <QDateTime>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <memory>
#include <optional>

/// A message of a queue as the broker keeps it.
struct QueuedMessage
{
    qint64 id = 0;
    QJsonObject message; ///< Empty when the file holds something else than a JSON object.
    QString tag;
    QDateTime queuedAt; ///< UTC.
    int tries = 0;      ///< Failed deliveries so far.
    QString lastError;  ///< Of the last failed delivery, or the reason for parking.
};

/// How a queue stands.
struct QueueState
{
    qint64 waiting = 0;
    qint64 parked = 0;
    std::optional<QueuedMessage> oldest; ///< The waiting message that is next.
};

/// Persistent queues of JSON messages in one SQLite file (mode 0600).
///
/// Messages leave a queue in the order they came. A message is on disk when `put` returns true and
/// stays until `remove`. A parked message is out of the way but kept, with the reason. The file is
/// opened on first use, and again by the next call after one has failed; a damaged file, a foreign
/// one or one of a newer version is left as it is and every call fails with `lastError` set. A file
/// that somebody else keeps locked makes a call fail after about two seconds.
///
/// One broker belongs to one thread; brokers of several threads or processes share a file.
class HOST_EXPORT DBQueueBroker
{
public:
    /// A broker without a file: every call fails until `setFile`.
    DBQueueBroker();
    /// A broker for the file given; its directory is created (mode 0700) when missing.
    explicit DBQueueBroker(const QString &file);
    ~DBQueueBroker();
    Q_DISABLE_COPY_MOVE(DBQueueBroker)

    /// Closes what is open; the next call opens the file given. Empty for none.
    void setFile(const QString &file);

    /// Stores a message at the end of a queue. `tag` is kept with it and means nothing here.
    bool put(const QString &queue, const QJsonObject &message, const QString &tag);
    /// From here to `endBatch` a `put` only collects its message and answers true. For messages
    /// that make no sense one without the other, put by somebody who does not look at the answer.
    void beginBatch();
    /// Stores what was collected, all of it or nothing. \return Whether it is on disk; true when
    /// nothing was put.
    bool endBatch();

    /// The message that is next; nothing when the queue is empty or cannot be read.
    std::optional<QueuedMessage> first(const QString &queue);
    /// Up to `limit` waiting messages in order, without taking them.
    QList<QueuedMessage> waiting(const QString &queue, int limit);
    /// Removes a delivered message. This and the following calls answer false for a number that no
    /// message has.
    bool remove(qint64 id);
    /// Counts a failed delivery and keeps the message where it is.
    bool noteFailure(qint64 id, const QString &reason);
    /// Puts a waiting message aside with the reason; the ones behind it move up.
    bool park(qint64 id, const QString &reason);
    QList<QueuedMessage> parked(const QString &queue);
    /// Puts a parked message back at its old place in the queue, its tries counted anew.
    bool unpark(qint64 id);

    /// Counts and the next message; nothing when the file cannot be read.
    std::optional<QueueState> state(const QString &queue);

    /// Why the last call failed, in words for the integrator; empty after a success.
    QString lastError() const;
    /// The file, as configured.
    QString file() const;

private:
    class Store;
    std::unique_ptr<Store> store;
};

extern template class HOST_EXPORT Singleton<DBQueueBroker>;
