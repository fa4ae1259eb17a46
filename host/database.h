#pragma once

#include "host/export.h"

#include <QHash>
#include <QList>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QVariantList>

#include <optional>

class QSqlError;

/// A till's store: one SQLite file (mode 0600) with its receipts, their numbers and its queues.
///
/// The file is opened on first use and created when missing, its directory (0700) included; one of
/// an older version is brought forward. A failure closes it, which undoes a transaction under way,
/// and the next call outside of one finds it afresh. A file that somebody else keeps locked makes a
/// call fail after about two seconds. A damaged file, a foreign one and one of a newer version are
/// left as they are.
///
/// One object belongs to one thread; objects of several threads and processes share a file.
class HOST_EXPORT Database
{
public:
    using Row = QVariantList;

    /// Why the last call failed.
    enum class Problem {
        None,
        Unavailable, ///< Locked, full, not readable or not writable: may pass.
        Damaged,
        Foreign, ///< Made for something else.
        Newer,   ///< Made by a newer version.
    };

    /// Empty for no file: every call fails.
    explicit Database(QString file = {});
    ~Database();
    Q_DISABLE_COPY_MOVE(Database)

    const QString &file() const { return path; }
    /// Remembers beside the file that damage was met in it, for one who looks into it later.
    QString damageMark() const { return path + QLatin1String("-damaged"); }
    /// Whether the file is open and ours; opens it if it is not.
    [[nodiscard]] bool open();
    /// Undoes a transaction under way. The next call outside of one opens the file again.
    void close();

    /// The rows that a query answers. `sql` must be a literal: it is prepared once.
    [[nodiscard]] std::optional<QList<Row>> read(const char *sql, const QVariantList &values = {});
    /// Runs a statement, which is a transaction of its own outside `Transaction`.
    /// \return How many rows it changed; nothing after a failure.
    [[nodiscard]] std::optional<int> write(const char *sql, const QVariantList &values = {});
    /// Reads all of the file. \return What is damaged in it, empty for nothing; no value when that
    /// cannot be told.
    [[nodiscard]] std::optional<QString> findDamage();
    /// The number of the row inserted last.
    qint64 lastRow() const { return insertedRow; }

    /// What kept the last call from its work; `None` after a success.
    Problem problem() const { return kind; }
    /// Why the last call failed, naming the file; empty after a success.
    const QString &lastError() const { return error; }

private:
    friend class Transaction;

    QSqlQuery *run(const char *sql, const QVariantList &values);
    bool openFile();
    bool createFile();
    bool checkOwner();
    bool bringForward();
    bool switchToWal();
    bool execute(const QString &sql);
    std::optional<int> number(const QString &sql);
    bool fail(Problem problem, const QString &reason);
    bool fail(const QSqlError &reason);

    QString path;
    QString connectionName;
    QSqlDatabase connection;
    QHash<const char *, QSqlQuery> queries;
    qint64 insertedRow = 0;
    int transactions = 0; ///< How deep they are nested.
    Problem kind = Problem::None;
    QString error;
};

/// Several statements as one: all of them or, unless `commit` answers true, none. A transaction
/// inside another one is part of it.
class HOST_EXPORT Transaction
{
public:
    /// Begins it, waiting about two seconds for one of somebody else. The database must outlive it.
    explicit Transaction(Database &database);
    ~Transaction();
    Q_DISABLE_COPY_MOVE(Transaction)

    /// Whether statements may be run.
    [[nodiscard]] bool begun() const { return isBegun; }
    /// Whether all is on the disk or, inside another transaction, nothing of it has failed.
    [[nodiscard]] bool commit();

private:
    Database &database;
    bool isBegun;
    bool isOpen;
};
