#pragma once

#include <QByteArray>
#include <QString>

struct sqlite3;
struct sqlite3_stmt;

namespace bench {

/// The floor of every work on the store: the till's file and its pragmas with one receipt in it,
/// SQLite itself and its prepared statements.
class BareStore
{
public:
    /// Opens the file, which is created the way the till does it when it is missing.
    explicit BareStore(const QString &file);
    ~BareStore();
    Q_DISABLE_COPY_MOVE(BareStore)

    /// Puts a message at the end of the loyalty system's queue.
    bool insert(const QByteArray &message);
    /// Changes the receipt's document.
    bool update(const QByteArray &document);
    /// For several of these in one go: "BEGIN", "COMMIT".
    bool execute(const char *sql);

private:
    sqlite3 *database = nullptr;
    sqlite3_stmt *insertion = nullptr;
    sqlite3_stmt *change = nullptr;
};

} // namespace bench
