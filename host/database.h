#pragma once

#include "host/export.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QVariantList>

#include <functional>
#include <memory>
#include <tl/expected.hpp>

/// The reason why a call on a database failed.
struct DatabaseError
{
    enum class Kind {
        Unavailable, ///< Locked, full, not readable or not writable; a later call may succeed.
        Damaged,
        Foreign, ///< Created by another program.
        Newer,   ///< Written by a newer version.
    };

    Kind kind = Kind::Unavailable;
    QString text; ///< Names the file.

    operator QString() const { return text; }
};

template<typename T>
using DatabaseResult = tl::expected<T, DatabaseError>;

/// One SQLite file (mode 0600, WAL, synchronous=FULL) with its owner's tables.
///
/// The first call opens the file and creates it and its directory (0700) when missing. A failure
/// closes the file, which rolls back a transaction under way; the next call opens it again. A file
/// that is damaged, foreign or newer is not changed.
///
/// One thread at a time may use an object. Several threads and processes may use one file, each
/// through its own object.
class HOST_EXPORT Database
{
public:
    /// Texts are UTF-8 in byte arrays, which QVariant reads as texts too.
    using Row = QVariantList;
    using Rows = QList<Row>;

    /// The purpose and the tables of the file.
    struct Schema
    {
        int applicationId; ///< Written in the file's header.
        int version;       ///< Written in the file; a higher one is `Newer`.
        /// The statements that turn an empty file into this version.
        QList<const char *> statements;
    };

    /// Runs the statements of a transaction; the first failure leaves the transaction's function.
    class HOST_EXPORT Transaction
    {
    public:
        /// The statement's rows.
        Rows run(const char *sql, const QVariantList &values = {})
        {
            return database.execute(sql, values);
        }

    private:
        friend class Database;
        explicit Transaction(Database &database)
            : database(database)
        {}

        Database &database;
    };

    Database(QString file, Schema schema);
    ~Database();
    Q_DISABLE_COPY_MOVE(Database)

    const QString &file() const { return path; }
    /// The marker beside a file that was found damaged, for a later check or repair.
    QString damageMark() const;
    /// How long a call waits for another process's lock, in milliseconds; 2,000 until set.
    void setPatience(int milliseconds);
    /// Makes the object read-only; it then also reads a newer file as far as its tables are known.
    void setReadOnly() { readOnly = true; }
    void close();

    /// Runs a statement. \return Its rows. `sql` must be a literal, because the statement is
    /// prepared once.
    [[nodiscard]] DatabaseResult<Rows> run(const char *sql, const QVariantList &values = {});
    /// Runs the statements of `work` as one transaction; the first failure undoes them all.
    [[nodiscard]] DatabaseResult<void> transact(const std::function<void(Transaction &)> &work);
    /// Reads the whole file; the error is `Damaged` when its pages do not fit together.
    [[nodiscard]] DatabaseResult<void> check();

private:
    struct Connection;

    [[nodiscard]] DatabaseResult<void> open();
    [[nodiscard]] DatabaseResult<void> createFile();
    [[nodiscard]] DatabaseResult<void> checkOwner();
    Rows execute(const char *sql, const QVariantList &values);
    void switchToWal();
    void makeTables();
    int number(const char *sql);
    tl::unexpected<DatabaseError> fail(DatabaseError::Kind kind, const QString &reason);
    template<typename Work>
    auto guarded(const Work &work) -> decltype(work());

    QString path;
    Schema schema;
    std::unique_ptr<Connection> connection;
    int patience = 2'000;
    bool readOnly = false;
};
