#include "benchmarks/barestore.h"

#include "till/core/deliverer.h"

#include <host/dbqueuebroker.h>

#include <QDateTime>
#include <QFile>

#include <sqlite3.h>

namespace bench {

namespace {

sqlite3_stmt *prepare(sqlite3 *database, const char *sql)
{
    sqlite3_stmt *statement = nullptr;
    sqlite3_prepare_v2(database, sql, -1, &statement, nullptr);
    return statement;
}

/// Binds the text and the time of now.
bool run(sqlite3_stmt *statement, const QByteArray &text)
{
    sqlite3_bind_text(statement, 1, text.constData(), static_cast<int>(text.size()), nullptr);
    sqlite3_bind_int64(statement, 2, QDateTime::currentMSecsSinceEpoch());
    const auto done = sqlite3_step(statement) == SQLITE_DONE;
    return sqlite3_reset(statement) == SQLITE_OK && done;
}

} // namespace

BareStore::BareStore(const QString &file)
{
    (void)DBQueueBroker(file).state(till::loyaltyQueue());
    sqlite3_open(QFile::encodeName(file).constData(), &database);
    execute("PRAGMA journal_mode = WAL");
    execute("PRAGMA synchronous = FULL");
    execute(
        "INSERT INTO receipts (shop, cash, shift, number, kind, begun, state, changed, document)"
        " VALUES (12, 3, 45, 1, 1, '2026-03-05T14:07:09', 'open', 0, '')");
    insertion = prepare(database, "INSERT INTO messages (queue, message, tag, queuedAt) "
                                  "VALUES ('lmmindbox', ?, '', ?)");
    change = prepare(database, "UPDATE receipts SET document = ?, changed = ?");
}

BareStore::~BareStore()
{
    sqlite3_finalize(insertion);
    sqlite3_finalize(change);
    sqlite3_close(database);
}

bool BareStore::insert(const QByteArray &message)
{
    return run(insertion, message);
}

bool BareStore::update(const QByteArray &document)
{
    return run(change, document);
}

bool BareStore::execute(const char *sql)
{
    return sqlite3_exec(database, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

} // namespace bench
