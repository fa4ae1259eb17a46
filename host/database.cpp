#include "host/database.h"

#include "host/privatefile.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QFileInfo>
#include <QThread>

#include <SQLiteCpp/SQLiteCpp.h>

#include <cerrno>
#include <fcntl.h>
#include <mutex>
#include <sqlite3.h>
#include <unistd.h>
#include <unordered_map>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

using Kind = DatabaseError::Kind;

Kind kindOf(int extendedCode)
{
    constexpr int primaryCode = 0xFF; // the higher bits of the code give the detail
    const auto code = extendedCode & primaryCode;
    switch (code) {
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
    case SQLITE_ERROR:      // the statements are fixed, so a table has changed
    case SQLITE_CONSTRAINT: // and so has a value
        return Kind::Damaged;
    default:
        return Kind::Unavailable;
    }
}

void bind(SQLite::Statement &statement, int index, const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::UnknownType:
        statement.bind(index);
        break;
    case QMetaType::Double:
        statement.bind(index, value.toDouble());
        break;
    case QMetaType::QString:
    case QMetaType::QByteArray:
        statement.bind(index, value.toByteArray().toStdString());
        break;
    default:
        statement.bind(index, static_cast<int64_t>(value.toLongLong()));
    }
}

QVariant valueOf(const SQLite::Column &column)
{
    if (column.isInteger())
        return static_cast<qint64>(column.getInt64());
    if (column.isFloat())
        return column.getDouble();
    return QByteArray(static_cast<const char *>(column.getBlob()), column.getBytes());
}

} // namespace

struct Database::Connection
{
    explicit Connection(const QString &path)
        // SQLite takes ":memory:" for no file at all, but an absolute path always for a file.
        : database(QFile::encodeName(QFileInfo(path).absoluteFilePath()).toStdString(),
                   SQLite::OPEN_READWRITE)
    {}

    /// The statement with its values, prepared once.
    SQLite::Statement &prepare(const char *sql, const QVariantList &values)
    {
        const auto found = statements.try_emplace(sql, database, sql).first;
        auto &statement = found->second;
        for (qsizetype i = 0; i < values.size(); ++i)
            bind(statement, static_cast<int>(i) + 1, values.at(i));
        return statement;
    }

    SQLite::Database database;
    std::unordered_map<const char *, SQLite::Statement> statements;
};

Database::Database(QString file, Schema schema)
    : path(std::move(file))
    , schema(std::move(schema))
{}

Database::~Database() = default;

QString Database::damageMark() const
{
    return path + "-damaged"_L1;
}

void Database::setPatience(int milliseconds)
{
    patience = milliseconds;
    if (connection)
        connection->database.setBusyTimeout(patience);
}

void Database::close()
{
    connection.reset();
}

/// Runs `work` and turns its exceptions into errors.
template<typename Work>
auto Database::guarded(const Work &work) -> decltype(work())
{
    try {
        return work();
    } catch (const SQLite::Exception &exception) {
        const auto kind = kindOf(exception.getExtendedErrorCode());
        return fail(kind, QString::fromUtf8(exception.what()));
    }
}

DatabaseResult<void> Database::open()
{
    if (connection)
        return {};
    // SQLite's locks belong to the process: closing any other descriptor of the file drops them. So
    // no thread may create the file while another one opens it.
    static std::mutex opening;
    const std::scoped_lock lock(opening);
    return createFile().and_then([this] {
        return guarded([this]() -> DatabaseResult<void> {
            connection = std::make_unique<Connection>(path);
            connection->database.setBusyTimeout(patience);
            return checkOwner();
        });
    });
}

DatabaseResult<Database::Rows> Database::run(const char *sql, const QVariantList &values)
{
    return open().and_then(
        [&] { return guarded([&] { return DatabaseResult<Rows>(execute(sql, values)); }); });
}

DatabaseResult<void> Database::transact(const std::function<void(Transaction &)> &work)
{
    return open().and_then([&] {
        return guarded([&] {
            SQLite::Transaction begun(connection->database, SQLite::TransactionBehavior::IMMEDIATE);
            Transaction transaction(*this);
            work(transaction);
            begun.commit();
            return DatabaseResult<void>();
        });
    });
}

DatabaseResult<void> Database::check()
{
    return run("PRAGMA quick_check(1)").and_then([this](const Rows &rows) -> DatabaseResult<void> {
        const auto found = rows.value(0).value(0).toString();
        if (found == "ok"_L1)
            return {};
        return fail(Kind::Damaged, u"damaged: "_s + found.simplified());
    });
}

/// Runs a statement on the open file; throws after a failure.
Database::Rows Database::execute(const char *sql, const QVariantList &values)
{
    auto &statement = connection->prepare(sql, values);
    Rows rows;
    while (statement.executeStep()) {
        Row row;
        for (int column = 0; column < statement.getColumnCount(); ++column)
            row.append(valueOf(statement.getColumn(column)));
        rows.append(row);
    }
    statement.reset();
    return rows;
}

DatabaseResult<void> Database::createFile()
{
    const auto unavailable = [this](const QString &reason) {
        return fail(Kind::Unavailable, reason);
    };
    const auto directory = QFileInfo(path).absolutePath();
    const auto fine = privatefile::createDirectory(directory).and_then(
        [this] { return privatefile::examine(path); });
    if (!fine)
        return unavailable(fine.error());
    // SQLite gives its other files the mode of this one.
    if (QFileInfo::exists(path)) {
        // By path: closing a descriptor would drop SQLite's locks.
        if (!QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner))
            return unavailable(u"the mode 0600 cannot be set"_s);
        return {};
    }
    const auto descriptor = privatefile::open(path, O_RDWR | O_CREAT | O_EXCL);
    if (descriptor >= 0)
        ::close(descriptor);
    else if (errno != EEXIST)
        return unavailable(u"cannot be created: "_s + qt_error_string());
    if (!privatefile::syncDirectory(directory))
        return unavailable(qt_error_string());
    return {};
}

int Database::number(const char *sql)
{
    return connection->database.execAndGet(sql).getInt();
}

/// Checks that the file is the owner's; an empty file becomes one.
DatabaseResult<void> Database::checkOwner()
{
    const auto id = number("PRAGMA application_id");
    const auto version = number("PRAGMA user_version");
    // A file with an application id is in use, even without tables.
    const auto isNew = id == 0 && number("SELECT count(*) FROM sqlite_schema") == 0;
    if (!isNew && id != schema.applicationId)
        return fail(Kind::Foreign, u"expected a till's store, found a database of "
                                   "something else"_s);
    if (!isNew && version < 1)
        return fail(Kind::Damaged, u"damaged: there is no version"_s);
    if (version > schema.version && readOnly) {
        connection->database.exec("PRAGMA query_only = ON");
        return {};
    }
    if (version > schema.version)
        return fail(
            Kind::Newer,
            u"written by a newer version: version %1, expected at most %2"_s.arg(version).arg(
                schema.version));
    if (isNew)
        connection->database.exec("PRAGMA auto_vacuum = INCREMENTAL");
    switchToWal();
    connection->database.exec("PRAGMA synchronous = FULL");
    // A killed process may have written what it could not sync: nobody may act on that before.
    connection->database.exec("PRAGMA wal_checkpoint");
    if (isNew)
        makeTables();
    return {};
}

/// Switches to WAL; SQLite itself does not wait for a lock here.
void Database::switchToWal()
{
    constexpr unsigned long pause = 20;
    for (const QDeadlineTimer deadline(patience);; QThread::msleep(pause)) {
        try {
            connection->database.exec("PRAGMA journal_mode = WAL");
            return;
        } catch (const SQLite::Exception &exception) {
            if (exception.getErrorCode() != SQLITE_BUSY || deadline.hasExpired())
                throw;
        }
    }
}

void Database::makeTables()
{
    SQLite::Transaction transaction(connection->database, SQLite::TransactionBehavior::IMMEDIATE);
    // Another process may have created the tables meanwhile.
    if (number("PRAGMA user_version") == schema.version)
        return;
    for (const auto *statement : schema.statements)
        connection->database.exec(statement);
    const auto sign =
        u"PRAGMA application_id = %1; PRAGMA user_version = %2"_s.arg(schema.applicationId)
            .arg(schema.version);
    connection->database.exec(sign.toStdString());
    transaction.commit();
}

/// Closes the file and marks a damaged one.
tl::unexpected<DatabaseError> Database::fail(DatabaseError::Kind kind, const QString &reason)
{
    close();
    if (kind == Kind::Damaged && !QFileInfo::exists(damageMark()))
        (void)privatefile::write(damageMark(), {});
    return tl::unexpected(DatabaseError{kind, u"%1: the store: %2"_s.arg(path, reason)});
}
