#include "till/core/unstoredmessages.h"

#include <algorithm>

namespace till {

void UnstoredMessages::add(int receipt, const QList<QueuedMessage> &messages)
{
    const std::scoped_lock lock(mutex);
    for (auto message : messages) {
        message.id = ++lastId;
        entries.append({receipt, message});
    }
}

std::optional<QueuedMessage> UnstoredMessages::first() const
{
    const std::scoped_lock lock(mutex);
    const auto waiting = std::find_if(entries.begin(), entries.end(),
                                      [](const Entry &entry) { return !entry.message.isParked; });
    return waiting == entries.end() ? std::nullopt : std::optional(waiting->message);
}

void UnstoredMessages::remove(qint64 id)
{
    const std::scoped_lock lock(mutex);
    entries.removeIf([id](const Entry &entry) { return entry.message.id == id; });
}

void UnstoredMessages::park(qint64 id, const QString &reason)
{
    const std::scoped_lock lock(mutex);
    for (auto &entry : entries) {
        if (entry.message.id != id)
            continue;
        entry.message.isParked = true;
        entry.message.lastError = reason;
    }
}

QList<QueuedMessage> UnstoredMessages::of(int receipt) const
{
    const std::scoped_lock lock(mutex);
    QList<QueuedMessage> messages;
    for (const auto &entry : entries) {
        if (entry.receipt == receipt)
            messages.append(entry.message);
    }
    return messages;
}

void UnstoredMessages::forget(int receipt)
{
    const std::scoped_lock lock(mutex);
    entries.removeIf([receipt](const Entry &entry) { return entry.receipt == receipt; });
}

} // namespace till
