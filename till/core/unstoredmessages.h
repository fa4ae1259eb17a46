#pragma once

#include <host/dbqueuebroker.h>

#include <QList>
#include <QString>

#include <mutex>
#include <optional>

namespace till {

/// The messages of committed receipts that are not in the store yet, in memory: they are delivered
/// from here while the disk is broken. For all threads.
class UnstoredMessages
{
public:
    void add(int receipt, const QList<QueuedMessage> &messages);
    /// The message that is next; its `id` stands for it below. Nothing when none waits.
    std::optional<QueuedMessage> first() const;
    void remove(qint64 id);
    /// Puts a message aside that was refused.
    void park(qint64 id, const QString &reason);
    /// What is left of a receipt's messages, in order.
    QList<QueuedMessage> of(int receipt) const;
    void forget(int receipt);

private:
    struct Entry
    {
        int receipt = 0; ///< Its number.
        QueuedMessage message;
    };

    mutable std::mutex mutex;
    QList<Entry> entries;
    qint64 lastId = 0;
};

} // namespace till
