#include "host/queuestore.h"

#include "host/privatefile.h"

#include <QFile>
#include <QFileInfo>
#include <QSqlError>
#include <QThread>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <mutex>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int applicationId = 0x54696C51; // "TilQ" in the file's header
constexpr int schemaVersion = 1;
constexpr int busyMilliseconds = 2000;

const char *statementText(QueueStore::Statement statement)
{
    switch (statement) {
    case QueueStore::Statement::Put:
        return "INSERT INTO messages (queue, message, tag, queuedAt) VALUES (?, ?, ?, ?)";
    case QueueStore::Statement::Waiting:
        return "SELECT id, message, tag, queuedAt, tries, lastError FROM messages "
               "WHERE queue = ? AND parked = 0 ORDER BY id LIMIT ?";
    case QueueStore::Statement::Parked:
        return "SELECT id, message, tag, queuedAt, tries, lastError FROM messages "
               "WHERE queue = ? AND parked = 1 ORDER BY id";
    case QueueStore::Statement::Count:
        return "SELECT parked, count(*) FROM messages WHERE queue = ? GROUP BY parked";
    case QueueStore::Statement::Remove:
        return "DELETE FROM messages WHERE id = ?";
    case QueueStore::Statement::NoteFailure:
        return "UPDATE messages SET tries = tries + 1, lastError = ? WHERE id = ?";
    case QueueStore::Statement::Park:
        return "UPDATE messages SET parked = 1, lastError = ? WHERE id = ? AND parked = 0";
    case QueueStore::Statement::Unpark:
        return "UPDATE messages SET parked = 0, tries = 0 WHERE id = ? AND parked = 1";
    case QueueStore::Statement::Begin:
        return "BEGIN IMMEDIATE";
    case QueueStore::Statement::Commit:
        return "COMMIT";
    }
    return "";
}

/// Guards the opening of files. SQLite's locks belong to the process: closing a descriptor that is
/// not SQLite's own drops them, so a file must not be created while another thread opens it.
std::mutex &openingMutex()
{
    static std::mutex mutex;
    return mutex;
}

/// SQLite's own words; Qt's say no more than which call failed.
QString reasonOf(const QSqlError &error)
{
    return error.databaseText().isEmpty() ? error.text() : error.databaseText();
}

} // namespace

QueueStore::QueueStore()
{
    static std::atomic<int> number = 0;
    connectionName = QStringLiteral("queue-%1").arg(++number);
}

QueueStore::~QueueStore()
{
    close();
}

bool QueueStore::open(const QString &file)
{
    close();
    // An absolute path means to SQLite what it says; ":memory:" would not.
    const auto path = QFileInfo(file).absoluteFilePath();
    const std::scoped_lock lock(openingMutex());
    if (!createFile(path))
        return false;
    database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connectionName);
    database.setDatabaseName(path);
    database.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=%1").arg(busyMilliseconds));
    if (!database.open())
        fail(reasonOf(database.lastError()));
    else if (checkOwner() && switchToWal() && execute(QStringLiteral("PRAGMA synchronous = FULL")))
        return true;
    const auto reason = error;
    close();
    error = reason;
    return false;
}

void QueueStore::close()
{
    queries.fill(QSqlQuery());
    if (!database.isValid())
        return;
    database.close();
    database = {};
    QSqlDatabase::removeDatabase(connectionName);
}

QSqlQuery *QueueStore::run(Statement statement, const QVariantList &values)
{
    auto &query = queries.at(static_cast<size_t>(statement));
    if (query.lastQuery().isEmpty()) {
        query = QSqlQuery(database);
        query.setForwardOnly(true);
        if (!query.prepare(QLatin1String(statementText(statement)))) {
            fail(reasonOf(query.lastError()));
            return nullptr;
        }
    }
    for (qsizetype i = 0; i < values.size(); ++i)
        query.bindValue(static_cast<int>(i), values.at(i));
    if (query.exec())
        return &query;
    fail(reasonOf(query.lastError()));
    return nullptr;
}

bool QueueStore::createFile(const QString &path)
{
    const auto directory = QFileInfo(path).path();
    if (const auto reason = privatefile::createDirectory(directory))
        return fail(*reason);
    const auto name = QFile::encodeName(path);
    struct stat status = {};
    if (::stat(name.constData(), &status) == 0) {
        if (!S_ISREG(status.st_mode))
            return fail(QStringLiteral("expected a regular file"));
        // Not through a descriptor, for the locks' sake.
        const auto narrow =
            (status.st_mode & 07777) == 0600 || ::chmod(name.constData(), 0600) == 0;
        return narrow || fail(QStringLiteral("the mode 0600 cannot be set: ") + qt_error_string());
    }
    // SQLite gives its other files the mode of this one.
    const auto descriptor = privatefile::open(path, O_RDWR | O_CREAT | O_EXCL);
    if (descriptor < 0)
        return errno == EEXIST || fail(QStringLiteral("cannot be created: ") + qt_error_string());
    ::close(descriptor);
    return privatefile::syncDirectory(directory) || fail(qt_error_string());
}

/// Whether the file is one of ours; a file with nothing in it becomes one.
bool QueueStore::checkOwner()
{
    const auto id = pragma(QStringLiteral("application_id"));
    if (id < 0)
        return false;
    if (id == 0)
        return createTables();
    if (id != applicationId)
        return fail(
            QStringLiteral("expected a file of queues, found a database of something else"));
    const auto version = pragma(QStringLiteral("user_version"));
    if (version < 0)
        return false;
    if (version > schemaVersion)
        return fail(QStringLiteral("written by a newer version: version %1, expected at most %2")
                        .arg(version)
                        .arg(schemaVersion));
    return version == schemaVersion || fail(QStringLiteral("damaged: there is no version"));
}

bool QueueStore::createTables()
{
    // Other processes may be about to do the same: the first one does it.
    if (!execute(QStringLiteral("BEGIN IMMEDIATE")))
        return false;
    if (pragma(QStringLiteral("application_id")) == applicationId)
        return execute(QStringLiteral("ROLLBACK"));
    QSqlQuery count(database);
    if (!count.exec(QStringLiteral("SELECT count(*) FROM sqlite_schema")) || !count.next())
        return fail(reasonOf(count.lastError()));
    if (count.value(0).toInt() != 0)
        return fail(
            QStringLiteral("expected a file of queues, found a database of something else"));
    count.finish();
    // Numbers are never given twice: a deliverer may still hold that of a removed message.
    return execute(QStringLiteral("CREATE TABLE messages ("
                                  "id INTEGER PRIMARY KEY AUTOINCREMENT, queue TEXT NOT NULL, "
                                  "message TEXT NOT NULL, tag TEXT NOT NULL, "
                                  "queuedAt INTEGER NOT NULL, tries INTEGER NOT NULL DEFAULT 0, "
                                  "lastError TEXT NOT NULL DEFAULT '', "
                                  "parked INTEGER NOT NULL DEFAULT 0)")) &&
           execute(
               QStringLiteral("CREATE INDEX messagesInOrder ON messages (queue, parked, id)")) &&
           execute(QStringLiteral("PRAGMA user_version = %1").arg(schemaVersion)) &&
           execute(QStringLiteral("PRAGMA application_id = %1").arg(applicationId)) &&
           execute(QStringLiteral("COMMIT"));
}

bool QueueStore::switchToWal()
{
    // SQLite does not wait for others here as it does elsewhere.
    constexpr int pause = 20;
    for (auto waited = 0; waited <= busyMilliseconds; waited += pause) {
        QSqlQuery query(database);
        if (query.exec(QStringLiteral("PRAGMA journal_mode = WAL")) && query.next()) {
            const auto mode = query.value(0).toString();
            return mode == QLatin1String("wal") ||
                   fail(QStringLiteral("expected the journal mode wal, found ") + mode);
        }
        fail(reasonOf(query.lastError()));
        QThread::msleep(pause);
    }
    return false;
}

bool QueueStore::execute(const QString &sql)
{
    QSqlQuery query(database);
    return query.exec(sql) || fail(reasonOf(query.lastError()));
}

/// The pragma's value, which is never negative in a file of ours; -1 after a failure.
int QueueStore::pragma(const QString &name)
{
    QSqlQuery query(database);
    if (query.exec(QStringLiteral("PRAGMA ") + name) && query.next())
        return std::max(query.value(0).toInt(), 0);
    fail(reasonOf(query.lastError()));
    return -1;
}

bool QueueStore::fail(const QString &reason)
{
    error = reason;
    return false;
}
