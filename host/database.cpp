#include "host/database.h"

#include "host/privatefile.h"
#include "host/schema.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlRecord>
#include <QThread>

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <mutex>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int busyMilliseconds = 2000;

Database::Problem problemOf(const QSqlError &error)
{
    constexpr int primaryCode = 0xFF; // the rest of SQLite's code says where it came from
    constexpr int corrupt = 11;
    constexpr int notADatabase = 26;
    const auto code = error.nativeErrorCode().toInt() & primaryCode;
    return code == corrupt || code == notADatabase ? Database::Problem::Damaged
                                                   : Database::Problem::Unavailable;
}

} // namespace

Database::Database(QString file)
    : path(std::move(file))
{
    static std::atomic<int> number = 0;
    connectionName = QStringLiteral("till-%1").arg(++number);
}

Database::~Database()
{
    close();
}

bool Database::open()
{
    if (connection.isOpen())
        return true;
    if (transactions > 0)
        return false; // it has failed already: what is left of it must not be done on its own
    if (path.isEmpty())
        return fail(Problem::Unavailable, QStringLiteral("no file is set"));
    // SQLite's locks belong to the process: closing a descriptor that is not SQLite's own drops
    // them, so a file must not be created while another thread opens it.
    static std::mutex opening;
    const std::scoped_lock lock(opening);
    if (openFile())
        return true;
    close();
    return false;
}

void Database::close()
{
    queries.clear();
    if (!connection.isValid())
        return;
    connection.close();
    connection = {};
    QSqlDatabase::removeDatabase(connectionName);
}

std::optional<QList<Database::Row>> Database::read(const char *sql, const QVariantList &values)
{
    auto *const query = run(sql, values);
    if (!query)
        return std::nullopt;
    QList<Row> rows;
    const auto columns = query->record().count();
    while (query->next()) {
        Row row;
        for (int column = 0; column < columns; ++column)
            row.append(query->value(column));
        rows.append(row);
    }
    const auto failure = query->lastError();
    query->finish();
    if (!failure.isValid())
        return rows;
    fail(failure);
    close();
    return std::nullopt;
}

std::optional<QString> Database::findDamage()
{
    const auto rows = open() ? read("PRAGMA quick_check(1)") : std::nullopt;
    const auto said = rows && !rows->isEmpty() ? rows->first().first().toString() : QString();
    if (said == QLatin1String("ok"))
        return QString();
    if (!said.isEmpty())
        fail(Problem::Damaged, QStringLiteral("damaged: ") + said.simplified());
    return kind == Problem::Damaged ? std::optional(error) : std::nullopt;
}

std::optional<int> Database::write(const char *sql, const QVariantList &values)
{
    auto *const query = run(sql, values);
    if (!query)
        return std::nullopt;
    insertedRow = query->lastInsertId().toLongLong();
    const auto changed = query->numRowsAffected();
    query->finish();
    return changed;
}

/// Null after a failure, which closes the file.
QSqlQuery *Database::run(const char *sql, const QVariantList &values)
{
    if (!open())
        return nullptr;
    auto found = queries.find(sql);
    if (found == queries.end()) {
        QSqlQuery query(connection);
        query.setForwardOnly(true);
        if (query.prepare(QLatin1String(sql)))
            found = queries.insert(sql, query);
        else
            fail(query.lastError());
    }
    if (found != queries.end()) {
        for (qsizetype i = 0; i < values.size(); ++i)
            found->bindValue(static_cast<int>(i), values.at(i));
        if (found->exec()) {
            error.clear();
            kind = Problem::None;
            return &*found;
        }
        fail(found->lastError());
    }
    close();
    return nullptr;
}

bool Database::openFile()
{
    if (!createFile())
        return false;
    connection = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connectionName);
    // An absolute path means to SQLite what it says; ":memory:" would not.
    connection.setDatabaseName(QFileInfo(path).absoluteFilePath());
    connection.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=%1").arg(busyMilliseconds));
    if (!connection.open())
        return fail(connection.lastError());
    return checkOwner() && switchToWal() && execute(QStringLiteral("PRAGMA synchronous = FULL"));
}

bool Database::createFile()
{
    const auto unavailable = [this](const QString &reason) {
        return fail(Problem::Unavailable, reason);
    };
    const auto directory = QFileInfo(path).absolutePath();
    if (const auto reason = privatefile::createDirectory(directory))
        return unavailable(*reason);
    const auto name = QFile::encodeName(QFileInfo(path).absoluteFilePath());
    struct stat status = {};
    if (::stat(name.constData(), &status) == 0) {
        if (!S_ISREG(status.st_mode))
            return unavailable(QStringLiteral("expected a regular file"));
        // Not through a descriptor, for the locks' sake.
        const auto narrow =
            (status.st_mode & 07777) == 0600 || ::chmod(name.constData(), 0600) == 0;
        return narrow ||
               unavailable(QStringLiteral("the mode 0600 cannot be set: ") + qt_error_string());
    }
    // SQLite gives its other files the mode of this one.
    const auto descriptor = privatefile::open(path, O_RDWR | O_CREAT | O_EXCL);
    if (descriptor < 0)
        return errno == EEXIST ||
               unavailable(QStringLiteral("cannot be created: ") + qt_error_string());
    ::close(descriptor);
    return privatefile::syncDirectory(directory) || unavailable(qt_error_string());
}

/// Whether the file is one of ours; a file with nothing in it becomes one.
bool Database::checkOwner()
{
    const auto id = number(QStringLiteral("PRAGMA application_id"));
    const auto version = number(QStringLiteral("PRAGMA user_version"));
    if (!id || !version)
        return false;
    // Whoever has signed the file has put something into it.
    const auto objects =
        *id == 0 ? number(QStringLiteral("SELECT count(*) FROM sqlite_schema")) : 1;
    if (!objects)
        return false;
    const auto isNew = *objects == 0;
    if (!isNew && *id != schema::applicationId)
        return fail(Problem::Foreign, QStringLiteral("expected a till's store, found a database of "
                                                     "something else"));
    if (!isNew && *version < 1)
        return fail(Problem::Damaged, QStringLiteral("damaged: there is no version"));
    if (*version > schema::version)
        return fail(Problem::Newer,
                    QStringLiteral("written by a newer version: version %1, expected at most %2")
                        .arg(*version)
                        .arg(schema::version));
    return *version == schema::version || bringForward();
}

/// Brings the file to this version in one transaction.
bool Database::bringForward()
{
    // Of no use in a file that has tables.
    if (!execute(QStringLiteral("PRAGMA auto_vacuum = INCREMENTAL")) ||
        !execute(QStringLiteral("BEGIN IMMEDIATE")))
        return false;
    // Another process may have been faster.
    const auto version = number(QStringLiteral("PRAGMA user_version"));
    if (!version)
        return false;
    for (const auto *statement : schema::changesSince(*version)) {
        if (!execute(QLatin1String(statement)))
            return false;
    }
    return execute(QStringLiteral("PRAGMA application_id = %1").arg(schema::applicationId)) &&
           execute(QStringLiteral("PRAGMA user_version = %1").arg(schema::version)) &&
           execute(QStringLiteral("COMMIT"));
}

bool Database::switchToWal()
{
    // SQLite does not wait for others here as it does elsewhere.
    constexpr int pause = 20;
    const QDeadlineTimer deadline(busyMilliseconds);
    do {
        QSqlQuery query(connection);
        if (query.exec(QStringLiteral("PRAGMA journal_mode = WAL")) && query.next()) {
            const auto mode = query.value(0).toString();
            return mode == QLatin1String("wal") ||
                   fail(Problem::Unavailable,
                        QStringLiteral("expected the journal mode wal, found ") + mode);
        }
        fail(query.lastError());
        QThread::msleep(pause);
    } while (!deadline.hasExpired());
    return false;
}

bool Database::execute(const QString &sql)
{
    QSqlQuery query(connection);
    return query.exec(sql) || fail(query.lastError());
}

std::optional<int> Database::number(const QString &sql)
{
    QSqlQuery query(connection);
    if (query.exec(sql) && query.next())
        return query.value(0).toInt();
    fail(query.lastError());
    return std::nullopt;
}

bool Database::fail(Problem problem, const QString &reason)
{
    kind = problem;
    if (problem == Problem::Damaged && !QFileInfo::exists(damageMark()))
        (void)privatefile::write(damageMark(), {});
    error = path.isEmpty() ? reason : QStringLiteral("%1: the store: %2").arg(path, reason);
    return false;
}

bool Database::fail(const QSqlError &reason)
{
    // SQLite's own words; Qt's say no more than which call failed.
    const auto words = reason.databaseText();
    return fail(problemOf(reason), words.isEmpty() ? reason.text() : words);
}
