#include "till/core/store.h"

#include "till/core/storeschema.h"

#include <host/privatefile.h>

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace till {

namespace {

/// Copies rows of a damaged store, attached as "old", into a fresh one.
class Rescue
{
public:
    Rescue(Database &fresh, const QString &old)
        : fresh(fresh)
        , old(QFileInfo(old).absoluteFilePath())
    {}

    /// Runs the statements for the identifiers from ?1 to ?2. When a page of them is unreadable,
    /// each half is copied by itself, so that the page hides only its own rows. A limit keeps a
    /// statement from reading on behind its last row.
    /// \return Whether all was readable.
    DatabaseResult<bool> copy(const QList<const char *> &statements, qint64 first, qint64 last)
    {
        const auto copied = attach().and_then([&](const auto & /*none*/) {
            return fresh.transact([&](auto &disk) {
                for (const auto *sql : statements)
                    disk.run(sql, {first, last});
            });
        });
        if (copied)
            return true;
        isAttached = false;
        if (copied.error().kind != DatabaseError::Kind::Damaged)
            return tl::unexpected(copied.error());
        if (first >= last || ++unreadable > mostUnreadable)
            return false;
        const auto middle = first + (last - first) / 2;
        return copy(statements, first, middle)
            .and_then([&](bool) { return copy(statements, middle + 1, last); })
            .map([](bool) { return false; });
    }

private:
    /// After very many unreadable ranges, there is no sense in going on.
    static constexpr int mostUnreadable = 10'000;

    DatabaseResult<Database::Rows> attach()
    {
        if (std::exchange(isAttached, true))
            return {};
        return fresh.run("ATTACH ? AS old", {old});
    }

    Database &fresh;
    const QString old;
    bool isAttached = false; ///< A failure closes the fresh file, and so detaches the old one.
    int unreadable = 0;
};

} // namespace

Store::Result<QString> Store::prepare()
{
    const Call call(*this);
    using Kind = DatabaseError::Kind;
    if (QFileInfo::exists(repairedFile()))
        return replaceDamaged();
    const auto looked = database.run(
        "SELECT r.id, m.id, p.number, h.id, g.cash, e.count FROM receipts r, messages m, "
        "positions p, history h, registers g, exchanges e LIMIT 0");
    if (!looked && (looked.error().kind == Kind::Foreign || looked.error().kind == Kind::Newer))
        return tl::unexpected(looked.error());
    if (!looked && looked.error().kind != Kind::Damaged)
        return looked.error();
    // The whole file is checked only after damage: that takes a second for 100,000 receipts.
    if (looked && !QFileInfo::exists(database.damageMark()))
        return QString();
    auto whole = database.check();
    // A second check from the disk keeps a passing read error from replacing the store.
    database.close();
    if (!whole && whole.error().kind == Kind::Damaged)
        whole = database.check();
    if (!whole && whole.error().kind != Kind::Damaged)
        return whole.error();
    // The pages may be intact, but a table is missing.
    if (!whole || !looked)
        return repair(whole ? looked.error() : whole.error());
    QFile::remove(database.damageMark());
    return QString();
}

/// Begins a new file with the unfinished work. The damaged one stays until that is complete.
QString Store::repair(const QString &damage)
{
    const auto part = database.file() + "-part"_L1;
    for (const auto suffix : {""_L1, "-wal"_L1, "-shm"_L1})
        QFile::remove(part + suffix);
    {
        Database fresh(part, storeSchema());
        const auto made = takeUp(fresh).and_then([&] {
            return fresh.run("PRAGMA wal_checkpoint(TRUNCATE)"); // all of it into the moved file
        });
        QFile::remove(fresh.damageMark());
        if (!made)
            return u"%1; %2"_s.arg(damage, made.error());
    }
    if (!QFile::rename(part, repairedFile()))
        return u"%1; %2: cannot be renamed"_s.arg(damage, part);
    return u"%1; %2"_s.arg(damage, replaceDamaged());
}

/// Copies the waiting messages and the receipts with something left to do. When messages are lost,
/// their receipts are to be committed again, which makes all messages of these receipts anew.
DatabaseResult<void> Store::takeUp(Database &fresh)
{
    const auto lastMessage = lastIdOf("SELECT seq FROM sqlite_sequence WHERE name = 'messages'",
                                      "SELECT max(id) FROM messages");
    const auto lastReceipt = lastIdOf("SELECT seq FROM sqlite_sequence WHERE name = 'receipts'",
                                      "SELECT max(id) FROM receipts");
    database.close();
    Rescue rescue(fresh, database.file());
    const auto isComplete = rescue.copy({"INSERT INTO messages SELECT * FROM old.messages "
                                         "WHERE id BETWEEN ?1 AND ?2 AND +parked = 0 "
                                         "LIMIT ?2 - ?1 + 1"},
                                        1, lastMessage);
    return isComplete
        .and_then([&](bool) {
            return rescue.copy(
                {"INSERT INTO receipts SELECT * FROM old.receipts WHERE id BETWEEN ?1 AND ?2 "
                 "AND (+state IN ('open', 'committing') OR +report = 'queued') "
                 "LIMIT ?2 - ?1 + 1",
                 "INSERT INTO positions SELECT * FROM old.positions "
                 "WHERE receipt BETWEEN ?1 AND ?2 AND receipt IN (SELECT id FROM receipts)"},
                1, lastReceipt);
        })
        .and_then([&](bool) {
            return rescue.copy({"INSERT INTO registers SELECT shop, cash, shift, max(number, ?2) "
                                "FROM old.registers"},
                               reserved, reserved);
        })
        .and_then([&](bool) {
            return fresh.transact([&](auto &disk) {
                if (!*isComplete) {
                    disk.run("DELETE FROM messages WHERE receipt IN (SELECT id FROM receipts)");
                    disk.run("UPDATE receipts SET state = 'committing', report = '' "
                             "WHERE state = 'committed'");
                    disk.run("DELETE FROM history WHERE id NOT IN "
                             "(SELECT max(id) FROM history GROUP BY receipt)");
                }
                disk.run("UPDATE messages SET receipt = NULL "
                         "WHERE receipt NOT IN (SELECT id FROM receipts)");
            });
        });
}

/// The highest identifier that a table ever had. Either page may be the damaged one.
qint64 Store::lastIdOf(const char *everGiven, const char *stillThere)
{
    qint64 last = 1;
    for (const auto *sql : {everGiven, stillThere}) {
        const auto found = database.run(sql);
        if (found && !found->isEmpty())
            last = std::max(last, found->first().first().toLongLong());
    }
    return last;
}

/// Moves the damaged file into "damaged/" and the new one to its place. A start after a kill goes
/// on with that.
QString Store::replaceDamaged()
{
    auto aside = QFileInfo::exists(database.file()) ? putAside() : QString();
    if (QFileInfo::exists(database.file()) || !QFile::rename(repairedFile(), database.file()) ||
        !privatefile::syncDirectory(directory))
        return u"%1; %2: cannot be renamed"_s.arg(aside, repairedFile());
    QFile::remove(database.damageMark());
    return aside;
}

/// Moves the damaged file into "damaged/" under a free name. \return Where it is now, or why it was
/// not moved.
QString Store::putAside()
{
    const auto place = directory + "/damaged"_L1;
    if (const auto made = privatefile::createDirectory(place); !made)
        return made.error();
    QString kept;
    for (int number = 1; kept.isEmpty() || QFileInfo::exists(kept); ++number)
        kept = u"%1/till.db.%2"_s.arg(place).arg(number);
    // The database goes last: SQLite would take a log left alone for that of the next database.
    for (const auto suffix : {"-wal"_L1, "-shm"_L1, ""_L1}) {
        QFile part(database.file() + suffix);
        if (part.exists() && !part.rename(kept + suffix))
            return u"it cannot be moved to %1: %2"_s.arg(kept, part.errorString());
    }
    return privatefile::syncDirectory(place) && privatefile::syncDirectory(directory)
               ? u"it is kept as %1"_s.arg(kept)
               : qt_error_string();
}

QString Store::repairedFile() const
{
    return database.file() + "-repaired"_L1;
}

} // namespace till
