#include "till/core/storeschema.h"

namespace till {

/// Times are milliseconds since 1970, except a receipt's begin, which is local time as text. The
/// triggers update a receipt's report when its messages change, and its history when it changes.
Database::Schema storeSchema()
{
    constexpr int tillStore = 0x54696C51; // "TilQ"
    constexpr int version = 1;
#define NOW "CAST((julianday('now') - 2440587.5) * 86400000 AS INTEGER)"
#define NOTE_HISTORY                                                                               \
    "BEGIN INSERT INTO history (receipt, at, state, report, answer, told) "                        \
    "VALUES (NEW.id, NEW.changed, NEW.state, NEW.report, NEW.answer, NEW.told); END"
    return {
        tillStore,
        version,
        {
            "CREATE TABLE registers (shop INTEGER NOT NULL, cash INTEGER NOT NULL, "
            "shift INTEGER NOT NULL, number INTEGER NOT NULL, PRIMARY KEY (shop, cash)) "
            "WITHOUT ROWID",

            "CREATE TABLE receipts (id INTEGER PRIMARY KEY AUTOINCREMENT, "
            "shop INTEGER NOT NULL, cash INTEGER NOT NULL, shift INTEGER NOT NULL, "
            "number INTEGER NOT NULL, kind INTEGER NOT NULL, begun TEXT NOT NULL, "
            "state TEXT NOT NULL, report TEXT NOT NULL DEFAULT '', "
            "answer TEXT NOT NULL DEFAULT '', told TEXT NOT NULL DEFAULT '', "
            "changed INTEGER NOT NULL, head TEXT NOT NULL)",
            "CREATE UNIQUE INDEX receiptsByNumber ON receipts (number, begun, cash, shop)",
            "CREATE INDEX receiptsByBegin ON receipts (begun)",
            "CREATE INDEX receiptsByState ON receipts (state, report)",
            "CREATE TABLE positions (receipt INTEGER NOT NULL, number INTEGER NOT NULL, "
            "position TEXT NOT NULL, PRIMARY KEY (receipt, number)) WITHOUT ROWID",
            "CREATE TABLE history (id INTEGER PRIMARY KEY, receipt INTEGER NOT NULL, "
            "at INTEGER NOT NULL, state TEXT NOT NULL, report TEXT NOT NULL, "
            "answer TEXT NOT NULL, told TEXT NOT NULL)",
            "CREATE INDEX historyOfReceipts ON history (receipt)",

            // AUTOINCREMENT: a deliverer may still hold the id of a removed message.
            "CREATE TABLE messages (id INTEGER PRIMARY KEY AUTOINCREMENT, queue TEXT NOT NULL, "
            "message TEXT NOT NULL, tag TEXT NOT NULL, queuedAt INTEGER NOT NULL, "
            "tries INTEGER NOT NULL DEFAULT 0, putOffSince INTEGER, "
            "lastError TEXT NOT NULL DEFAULT '', parked INTEGER NOT NULL DEFAULT 0, "
            "receipt INTEGER)",
            "CREATE INDEX messagesInOrder ON messages (queue, parked, id)",
            "CREATE INDEX messagesOfReceipts ON messages (receipt) WHERE receipt IS NOT NULL",

            "CREATE TABLE exchanges (operation TEXT NOT NULL, outcome TEXT NOT NULL, "
            "count INTEGER NOT NULL, seconds REAL NOT NULL, last INTEGER NOT NULL, "
            "PRIMARY KEY (operation, outcome)) WITHOUT ROWID",

            "CREATE TRIGGER receiptOpened AFTER INSERT ON receipts " NOTE_HISTORY,
            "CREATE TRIGGER receiptChanged AFTER UPDATE OF state, report, answer, told ON receipts "
            "WHEN (NEW.state, NEW.report, NEW.answer, NEW.told) IS NOT "
            "(OLD.state, OLD.report, OLD.answer, OLD.told) " NOTE_HISTORY,
            "CREATE TRIGGER receiptRemoved AFTER DELETE ON receipts BEGIN "
            "DELETE FROM positions WHERE receipt = OLD.id; "
            "DELETE FROM history WHERE receipt = OLD.id; END",
            "CREATE TRIGGER messageDelivered AFTER DELETE ON messages "
            "WHEN OLD.receipt IS NOT NULL BEGIN "
            "UPDATE receipts SET report = 'reported', changed = " NOW " "
            "WHERE id = OLD.receipt AND report = 'queued' "
            "AND NOT EXISTS (SELECT 1 FROM messages WHERE receipt = OLD.receipt); END",
            "CREATE TRIGGER messageParked AFTER UPDATE OF parked ON messages "
            "WHEN NEW.receipt IS NOT NULL AND NEW.parked <> OLD.parked BEGIN "
            "UPDATE receipts SET report = CASE WHEN EXISTS (SELECT 1 FROM messages "
            "WHERE receipt = NEW.receipt AND parked = 1) THEN 'refused' ELSE 'queued' END, "
            "answer = NEW.lastError, changed = " NOW " WHERE id = NEW.receipt; END",
        },
    };
#undef NOTE_HISTORY
#undef NOW
}

QDateTime utcOf(const QVariant &column)
{
    return QDateTime::fromMSecsSinceEpoch(column.toLongLong()).toUTC();
}

DocumentHeader headerOf(const Database::Row &row)
{
    DocumentHeader header;
    header.shopCode = row.at(0).toInt();
    header.cashCode = row.at(1).toInt();
    header.shift = row.at(2).toInt();
    header.num = row.at(3).toInt();
    header.kind = row.at(4).toInt();
    header.dateTimeBeg = QDateTime::fromString(row.at(5).toString(), Qt::ISODate);
    return header;
}

} // namespace till
