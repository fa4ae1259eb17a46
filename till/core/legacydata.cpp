#include "till/core/legacydata.h"

#include "till/core/damagedfile.h"
#include "till/core/reservednumbers.h"
#include "till/core/store.h"

#include <host/database.h>
#include <host/documentjson.h>
#include <host/privatefile.h>

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>

#include <cstdio>
#include <fcntl.h>

namespace till {

namespace {

constexpr qint64 largestReceipt = 64LL << 20;

/// The files of the first version, with the state of the receipts in them.
QList<std::pair<QString, ReceiptState>> receiptFiles(const QString &directory)
{
    QList<std::pair<QString, ReceiptState>> files;
    const auto addAll = [&](const QString &place, ReceiptState state) {
        const QDir in(directory + place);
        for (const auto &name : in.entryList({QStringLiteral("*.json")}, QDir::Files, QDir::Name))
            files.append({in.filePath(name), state});
    };
    addAll(QStringLiteral("/committed"), ReceiptState::Committed);
    addAll(QStringLiteral("/committing"), ReceiptState::Committing);
    if (const auto open = directory + QLatin1String("/open.json"); QFileInfo::exists(open))
        files.append({open, ReceiptState::Open});
    return files;
}

QJsonObject readObject(const QString &file, QString &error)
{
    const auto content = privatefile::read(file, largestReceipt);
    error = content.error;
    return QJsonDocument::fromJson(content.bytes).object();
}

} // namespace

bool Store::together(const std::function<bool()> &operations)
{
    Transaction transaction(database);
    return transaction.begun() && operations() && transaction.commit();
}

bool Store::adopt(const QSharedPointer<AbstractDocument> &document, ReceiptState state)
{
    const auto &header = document->getHeader();
    const auto known = database.read(
        "SELECT 1 FROM receipts WHERE number = ? AND shop = ? AND cash = ? AND shift = ? "
        "AND begun = ?",
        {header.num, header.shopCode, header.cashCode, header.shift,
         header.dateTimeBeg.toString(Qt::ISODate)});
    StoredReceipt receipt{document};
    return known && (!known->isEmpty() || insert(receipt, state));
}

bool Store::adoptNumbers(const TillPlace &place, int shift, int number)
{
    reserved->reserve(number);
    return writeNumbers(place, {shift, number});
}

namespace legacydata {

std::optional<QString> adoptQueue(const QString &directory)
{
    const auto queue = directory + QLatin1String("/queue.db");
    const auto store = Store::fileIn(directory);
    if (!QFileInfo::exists(queue) || QFileInfo::exists(store))
        return std::nullopt;
    {
        // Opened once and closed, all of it is in the one file, unless somebody else has it open.
        Database database(queue);
        if (!database.open()) {
            const auto isLost = database.problem() == Database::Problem::Damaged ||
                                database.problem() == Database::Problem::Foreign;
            return isLost ? std::nullopt : std::optional(database.lastError());
        }
        // Only a file that is written anew can be made to shrink when receipts are removed.
        if (!database.write("PRAGMA auto_vacuum = INCREMENTAL") || !database.write("VACUUM"))
            return database.lastError();
    }
    if (QFileInfo::exists(queue + QLatin1String("-wal")))
        return QStringLiteral("%1: an older till or delivery is still at work with it").arg(queue);
    if (::renameat2(AT_FDCWD, QFile::encodeName(queue).constData(), AT_FDCWD,
                    QFile::encodeName(store).constData(), RENAME_NOREPLACE) != 0 ||
        !privatefile::syncDirectory(directory))
        return QStringLiteral("%1: cannot be renamed to %2: %3")
            .arg(queue, store, qt_error_string());
    QFile::remove(queue + QLatin1String(".lock"));
    return std::nullopt;
}

QString adoptReceipts(const QString &directory, Store &store, const TillPlace &place)
{
    const auto counter = directory + QLatin1String("/counter.json");
    const auto files = receiptFiles(directory);
    if (files.isEmpty() && !QFileInfo::exists(counter))
        return {};
    QStringList notes;
    QStringList taken;
    const auto takeAll = [&] {
        for (const auto &[file, state] : files) {
            QString error;
            const auto json = readObject(file, error);
            const auto document = error.isEmpty() ? documentjson::fromJson(json, error) : nullptr;
            if (!document)
                notes.append(QStringLiteral("%1: the receipt cannot be read: %2; %3")
                                 .arg(file, error, putAside(file, directory)));
            else if (store.adopt(document, state))
                taken.append(file);
            else
                return false;
        }
        QString error;
        const auto numbers = readObject(counter, error);
        taken.append(counter);
        return store.adoptNumbers(place, numbers.value(QLatin1String("shift")).toInt(1),
                                  numbers.value(QLatin1String("number")).toInt(0));
    };
    if (!store.together(takeAll)) {
        notes.append(store.lastError());
        return notes.join(u'\n');
    }
    // Only now: until here a start would have begun anew.
    for (const auto &file : std::as_const(taken))
        QFile::remove(file);
    for (const auto *name : {"committed", "committing"})
        QDir(directory).rmdir(QLatin1String(name));
    return notes.join(u'\n');
}

} // namespace legacydata

} // namespace till
