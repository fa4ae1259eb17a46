#pragma once

#include "till/core/store.h"

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <utility>

namespace bench {

inline constexpr int usualLines = 5; ///< Of a receipt.

/// The payloads of such a receipt: its order and the change of its status.
std::pair<QJsonObject, QJsonObject> payloadsOf(int number);
/// The messages that carry them.
QList<QueuedMessage> messagesOf(int number);
/// Bytes of the message as a queue keeps it.
QByteArray toBytes(const QueuedMessage &message);
/// Bytes of the receipt as a store keeps it.
QByteArray documentOf(int number);

/// A till's store with committed receipts, one after the other by their numbers.
class FilledStore
{
public:
    FilledStore(const QString &directory, int firstNumber);

    /// Adds so many receipts in transactions of many, their two messages with them when these are
    /// to wait. \return Whether they are there.
    [[nodiscard]] bool add(int receipts, bool isWaiting);
    qint64 countWaiting();

private:
    bool addOne(bool isWaiting);

    till::Store store;
    int number;
};

} // namespace bench
