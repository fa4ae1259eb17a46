#include "host/schema.h"

namespace schema {

namespace {

/// Version 1: a file of queues.
const QList<const char *> queues{
    // Numbers are never given twice: a deliverer may still hold that of a removed message.
    "CREATE TABLE messages ("
    "id INTEGER PRIMARY KEY AUTOINCREMENT, queue TEXT NOT NULL, message TEXT NOT NULL, "
    "tag TEXT NOT NULL, queuedAt INTEGER NOT NULL, tries INTEGER NOT NULL DEFAULT 0, "
    "lastError TEXT NOT NULL DEFAULT '', parked INTEGER NOT NULL DEFAULT 0)",
    "CREATE INDEX messagesInOrder ON messages (queue, parked, id)",
};

/// Version 2: the receipts and their numbers beside the queues. Times are milliseconds since 1970
/// but for the receipt's begin, local time as it was read off the clock.
///
/// The triggers keep a receipt's report up to date whoever settles its messages, and its history
/// whoever changes it.
const QList<const char *> receipts{
    // How often the service has put the message off.
    "ALTER TABLE messages ADD COLUMN deferrals INTEGER NOT NULL DEFAULT 0",
    "ALTER TABLE messages ADD COLUMN receipt INTEGER",
    "CREATE INDEX messagesOfReceipts ON messages (receipt) WHERE receipt IS NOT NULL",

    "CREATE TABLE registers (shop INTEGER NOT NULL, cash INTEGER NOT NULL, "
    "shift INTEGER NOT NULL, number INTEGER NOT NULL, PRIMARY KEY (shop, cash)) WITHOUT ROWID",

    "CREATE TABLE receipts ("
    "id INTEGER PRIMARY KEY AUTOINCREMENT, shop INTEGER NOT NULL, cash INTEGER NOT NULL, "
    "shift INTEGER NOT NULL, number INTEGER NOT NULL, kind INTEGER NOT NULL, "
    "begun TEXT NOT NULL, state TEXT NOT NULL, report TEXT NOT NULL DEFAULT '', "
    "answer TEXT NOT NULL DEFAULT '', told TEXT NOT NULL DEFAULT '', "
    "changed INTEGER NOT NULL, document TEXT NOT NULL)",
    "CREATE INDEX receiptsByNumber ON receipts (number)",
    "CREATE INDEX receiptsByBegin ON receipts (begun)",
    "CREATE INDEX receiptsUnderWay ON receipts (state) WHERE state IN ('open', 'committing')",
    "CREATE INDEX receiptsUnreported ON receipts (report) WHERE report IN ('queued', 'refused')",

    "CREATE TABLE history (id INTEGER PRIMARY KEY, receipt INTEGER NOT NULL, at INTEGER NOT NULL, "
    "state TEXT NOT NULL, report TEXT NOT NULL, answer TEXT NOT NULL, told TEXT NOT NULL)",
    "CREATE INDEX historyOfReceipts ON history (receipt)",

    "CREATE TRIGGER receiptOpened AFTER INSERT ON receipts BEGIN "
    "INSERT INTO history (receipt, at, state, report, answer, told) "
    "VALUES (NEW.id, NEW.changed, NEW.state, NEW.report, NEW.answer, NEW.told); END",
    "CREATE TRIGGER receiptChanged AFTER UPDATE OF state, report, answer, told ON receipts "
    "WHEN (NEW.state, NEW.report, NEW.answer, NEW.told) IS NOT "
    "(OLD.state, OLD.report, OLD.answer, OLD.told) BEGIN "
    "INSERT INTO history (receipt, at, state, report, answer, told) "
    "VALUES (NEW.id, NEW.changed, NEW.state, NEW.report, NEW.answer, NEW.told); END",
    "CREATE TRIGGER receiptRemoved AFTER DELETE ON receipts BEGIN "
    "DELETE FROM history WHERE receipt = OLD.id; END",

    "CREATE TRIGGER messageDelivered AFTER DELETE ON messages WHEN OLD.receipt IS NOT NULL BEGIN "
    "UPDATE receipts SET report = 'reported', "
    "changed = CAST((julianday('now') - 2440587.5) * 86400000 AS INTEGER) "
    "WHERE id = OLD.receipt AND report = 'queued' "
    "AND NOT EXISTS (SELECT 1 FROM messages WHERE receipt = OLD.receipt); END",
    "CREATE TRIGGER messageParked AFTER UPDATE OF parked ON messages "
    "WHEN NEW.receipt IS NOT NULL AND NEW.parked <> OLD.parked BEGIN "
    "UPDATE receipts SET report = CASE WHEN EXISTS (SELECT 1 FROM messages "
    "WHERE receipt = NEW.receipt AND parked = 1) THEN 'refused' ELSE 'queued' END, "
    "answer = NEW.lastError, "
    "changed = CAST((julianday('now') - 2440587.5) * 86400000 AS INTEGER) "
    "WHERE id = NEW.receipt; END",
};

} // namespace

QList<const char *> changesSince(int oldVersion)
{
    QList<const char *> statements;
    if (oldVersion < 1)
        statements += queues;
    if (oldVersion < 2)
        statements += receipts;
    return statements;
}

} // namespace schema
