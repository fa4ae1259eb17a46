#pragma once

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QVariantList>

#include <array>

/// An open file of queues: the SQLite connection with its prepared statements.
class QueueStore
{
public:
    enum class Statement {
        Put,
        Waiting,
        Parked,
        Count,
        Remove,
        NoteFailure,
        Park,
        Unpark,
        Begin,
        Commit,
    };

    QueueStore();
    ~QueueStore();
    Q_DISABLE_COPY_MOVE(QueueStore)

    /// Opens the file, which is created when missing. \return Whether it is open and ours.
    bool open(const QString &file);
    bool isOpen() const { return database.isOpen(); }
    void close();

    /// Runs a statement, which is a transaction of its own outside `Begin` and `Commit`; closing
    /// the file undoes what came since `Begin`. \return Null after a failure, else the query, to be
    /// finished by the caller once its rows are read.
    QSqlQuery *run(Statement statement, const QVariantList &values);

    /// Why the last call failed.
    QString getError() const { return error; }

private:
    bool createFile(const QString &path);
    bool checkOwner();
    bool createTables();
    bool switchToWal();
    bool execute(const QString &sql);
    int pragma(const QString &name);
    bool fail(const QString &reason);

    QString connectionName;
    QSqlDatabase database;
    std::array<QSqlQuery, 10> queries;
    QString error;
};
