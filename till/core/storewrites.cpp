#include "till/core/store.h"

#include "till/core/storeschema.h"

#include <QJsonDocument>

namespace till {

namespace {

using Disk = Database::Transaction;

QVariant number(const QDateTime &time)
{
    return time.isValid() ? time.toMSecsSinceEpoch() : QVariant();
}

/// Writes state and report in one statement, so that the history gets one entry. \return The row.
qint64 writeHead(Disk &disk, const ReceiptRecord &record, const QByteArray &head, bool isReport)
{
    const auto &header = record.header;
    const auto rows = disk.run(
        "INSERT INTO receipts (shop, cash, shift, number, kind, begun, state, changed, head, "
        "report, answer, told) VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12) "
        "ON CONFLICT (number, begun, cash, shop) DO UPDATE SET "
        "state = ?7, changed = ?8, head = ?9, report = iif(?13, ?10, report), "
        "answer = iif(?13, ?11, answer), told = iif(?13, ?12, told) RETURNING id",
        {header.shopCode, header.cashCode, header.shift, header.num, header.kind,
         header.dateTimeBeg.toString(Qt::ISODate), nameOf(record.state), number(record.changed),
         head, nameOf(record.report.outcome), record.report.answer, record.report.told,
         isReport ? 1 : 0});
    return rows.value(0).value(0).toLongLong();
}

void writePosition(Disk &disk, qint64 row, int number, const QByteArray &json)
{
    if (json.isEmpty())
        disk.run("DELETE FROM positions WHERE receipt = ? AND number = ?", {row, number});
    else
        disk.run("INSERT INTO positions (receipt, number, position) VALUES (?, ?, ?) "
                 "ON CONFLICT DO UPDATE SET position = excluded.position",
                 {row, number, json});
}

/// Inserts the new messages before it removes the earlier ones, so that the triggers never see the
/// receipt as delivered.
void writeMessages(Disk &disk, qint64 row, const QList<QueuedMessage> &messages,
                   QHash<qint64, qint64> &ids)
{
    const auto before =
        disk.run("SELECT coalesce(max(id), 0) FROM messages WHERE receipt = ?", {row});
    for (const auto &message : messages) {
        const auto inserted = disk.run(
            "INSERT INTO messages (queue, message, tag, queuedAt, tries, putOffSince, parked, "
            "lastError, receipt) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?) RETURNING id",
            {message.queue, QJsonDocument(message.message).toJson(QJsonDocument::Compact),
             message.tag, message.queuedAt.toMSecsSinceEpoch(), message.tries,
             number(message.putOffSince), message.isParked ? 1 : 0, message.lastError, row});
        ids.insert(message.id, inserted.value(0).value(0).toLongLong());
    }
    disk.run("DELETE FROM messages WHERE receipt = ? AND id <= ?", {row, before.value(0).value(0)});
}

} // namespace

/// Writes all that is unsaved. Adds the ids of messages on the disk to `ids`, keyed by their ids in
/// memory.
void Store::writeAll(Disk &disk, QHash<qint64, qint64> &ids) const
{
    for (const auto &[message, isAccepted] : settled) {
        if (isAccepted)
            disk.run("DELETE FROM messages WHERE id = ?", {message.id});
        else
            disk.run("UPDATE messages SET tries = ?, putOffSince = ?, lastError = ?, parked = ? "
                     "WHERE id = ? AND parked = 0",
                     {message.tries, number(message.putOffSince), message.lastError,
                      message.isParked ? 1 : 0, message.id});
    }
    for (const auto &receipt : receipts) {
        const auto row = writeHead(disk, receipt.current(), receipt.head, receipt.isReport);
        for (auto position = receipt.positions.begin(); position != receipt.positions.end();
             ++position)
            writePosition(disk, row, position.key(), *position);
        if (receipt.isReport)
            writeMessages(disk, row, receipt.messages, ids);
    }
    for (const auto &exchange : counts)
        disk.run("INSERT INTO exchanges (operation, outcome, count, seconds, last) "
                 "VALUES (?, ?, ?, ?, ?) ON CONFLICT DO UPDATE SET count = count + excluded.count, "
                 "seconds = seconds + excluded.seconds, last = max(last, excluded.last)",
                 {exchange.operation, exchange.outcome, exchange.count, exchange.seconds,
                  exchange.last});
    if (numbersWait)
        disk.run("INSERT INTO registers (shop, cash, shift, number) VALUES (?, ?, ?, ?) "
                 "ON CONFLICT DO UPDATE SET shift = max(shift, excluded.shift), "
                 "number = max(number, excluded.number)",
                 {place.shopCode, place.cashCode, numbers.shift, numbers.number});
}

} // namespace till
