#include "simulator/statefile.h"

#include <QFile>
#include <QJsonDocument>
#include <QSqlError>
#include <QSqlQuery>

#include <cstdint>
#include <utility>

namespace simulator {

using namespace Qt::StringLiterals;

namespace {

constexpr int applicationId = 0x53696d75; // "Simu"
constexpr int version = 1;
constexpr auto ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

} // namespace

StateFile::~StateFile()
{
    inThread([this] {
        const auto name = database.connectionName();
        database = {};
        QSqlDatabase::removeDatabase(name);
    });
    ordered = nullptr;
    order.release();
}

QString StateFile::open(const QString &path, QList<KeptObject> &found)
{
    inThread([&] {
        connect(path);
        check();
        prepare();
        found = read();
    });
    if (error.isEmpty())
        QFile::setPermissions(path, ownerOnly);
    return error;
}

QString StateFile::write(const QList<KeptObject> &changes)
{
    inThread([&] {
        run(u"BEGIN IMMEDIATE"_s);
        for (const auto &[number, collection, key, content, change] : changes) {
            if (content.isEmpty())
                run(u"DELETE FROM objects WHERE number = ?"_s, {number});
            else
                run(u"INSERT OR REPLACE INTO objects VALUES (?, ?, ?, ?)"_s,
                    {number, collection, key,
                     QString::fromUtf8(QJsonDocument(content).toJson(QJsonDocument::Compact))});
        }
        run(u"COMMIT"_s);
        if (!error.isEmpty())
            database.rollback();
    });
    return std::exchange(error, {});
}

void StateFile::inThread(const std::function<void()> &call)
{
    ordered = &call;
    order.release();
    done.acquire();
}

void StateFile::serve()
{
    for (order.acquire(); ordered; order.acquire()) {
        (*ordered)();
        done.release();
    }
}

void StateFile::connect(const QString &path)
{
    // SQLite would make it for everybody to read. One that is there is not opened here: closing
    // it would end the locks of a simulator in the same process.
    if (QFile file(path);
        !file.exists() && !file.open(QIODevice::WriteOnly | QIODevice::NewOnly, ownerOnly))
        error = u"state %1: %2"_s.arg(path, file.errorString());
    database = QSqlDatabase::addDatabase(
        u"QSQLITE"_s, u"simulator %1"_s.arg(reinterpret_cast<std::uintptr_t>(this)));
    database.setDatabaseName(path);
    database.setConnectOptions(u"QSQLITE_BUSY_TIMEOUT=0"_s);
    if (error.isEmpty() && !database.open())
        complain(database.lastError().text());
}

void StateFile::check()
{
    // No second simulator gets in, and SQLite needs no memory to share.
    run(u"PRAGMA locking_mode = EXCLUSIVE"_s);
    const bool isNew = number(u"SELECT count(*) FROM sqlite_master"_s) == 0;
    const auto found = number(u"PRAGMA user_version"_s);
    if (!isNew && number(u"PRAGMA application_id"_s) != applicationId)
        complain(u"it is not the state of a simulator"_s);
    else if (!isNew && found != version)
        complain(u"it is of version %1, expected %2"_s.arg(found).arg(version));
}

void StateFile::prepare()
{
    run(u"PRAGMA journal_mode = WAL"_s);
    run(u"PRAGMA synchronous = FULL"_s);
    run(u"BEGIN IMMEDIATE"_s);
    run(u"CREATE TABLE IF NOT EXISTS objects (number INTEGER PRIMARY KEY, "
        "collection TEXT NOT NULL, key TEXT NOT NULL, content TEXT NOT NULL)"_s);
    run(u"PRAGMA application_id = %1"_s.arg(applicationId));
    run(u"PRAGMA user_version = %1"_s.arg(version));
    run(u"COMMIT"_s);
}

QList<KeptObject> StateFile::read()
{
    QList<KeptObject> found;
    auto query = run(u"SELECT number, collection, key, content FROM objects ORDER BY number"_s);
    while (query.next())
        found.append({.number = query.value(0).toLongLong(),
                      .collection = query.value(1).toString(),
                      .key = query.value(2).toString(),
                      .content = QJsonDocument::fromJson(query.value(3).toByteArray()).object()});
    return found;
}

QSqlQuery StateFile::run(const QString &sql, const QVariantList &values)
{
    QSqlQuery query(database);
    if (!error.isEmpty())
        return query;
    query.setForwardOnly(true);
    const bool isPrepared = query.prepare(sql);
    for (const auto &value : values)
        query.addBindValue(value);
    if (!isPrepared || !query.exec())
        complain(query.lastError().nativeErrorCode() == "5"_L1 ? u"another simulator uses it"_s
                                                               : query.lastError().text());
    return query;
}

int StateFile::number(const QString &sql)
{
    auto query = run(sql);
    return query.next() ? query.value(0).toInt() : 0;
}

void StateFile::complain(const QString &reason)
{
    if (error.isEmpty())
        error = u"state %1: %2"_s.arg(database.databaseName(), reason);
}

} // namespace simulator
