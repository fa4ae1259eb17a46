#pragma once

#include <QJsonObject>
#include <QList>
#include <QSqlDatabase>
#include <QString>
#include <QVariantList>

#include <functional>
#include <semaphore>
#include <thread>

class QSqlQuery;

namespace simulator {

/// One JSON object of a store.
struct KeptObject
{
    qint64 number = 0; ///< Its own, from 1, in the order they came.
    QString collection{};
    QString key{};
    QJsonObject content{}; ///< Empty for one that was removed.
    qint64 change = 0;     ///< By which change of this run it became what it is; not in a file.
};

/// The file in which a store survives kills: an SQLite database with one table.
///
/// Everything runs in a thread of its own, for Qt allows a database connection no other than the
/// one that opened it.
class StateFile
{
public:
    StateFile() = default;
    ~StateFile();
    Q_DISABLE_COPY_MOVE(StateFile)

    /// Opens the file or makes it, readable only by its owner, and reads what it holds. Returns
    /// what is wrong with it, empty when it can be used. A file that another simulator has open,
    /// or that is none of a simulator's, is refused and left as it is.
    [[nodiscard]] QString open(const QString &path, QList<KeptObject> &found);
    /// On the disk when it returns an empty text, else nothing of it is, for the reason told.
    [[nodiscard]] QString write(const QList<KeptObject> &changes);

private:
    void inThread(const std::function<void()> &call);
    void serve();
    void connect(const QString &path);
    void check();
    void prepare();
    QList<KeptObject> read();
    QSqlQuery run(const QString &sql, const QVariantList &values = {});
    int number(const QString &sql);
    void complain(const QString &reason);

    QSqlDatabase database;
    QString error; ///< The first one; what follows it is not tried.
    const std::function<void()> *ordered = nullptr; ///< None ends the thread.
    std::binary_semaphore order{0};
    std::binary_semaphore done{0};
    std::jthread thread{[this] { serve(); }};
};

} // namespace simulator
