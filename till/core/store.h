#pragma once

#include "till/core/deliverystate.h"
#include "till/core/saleevent.h"

#include <host/abstractdocument.h>
#include <host/database.h>
#include <host/dbqueuebroker.h>

#include <QDateTime>
#include <QList>
#include <QSharedPointer>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace till {

class ReservedNumbers;

/// Where the till stands.
struct TillPlace
{
    int shopCode = 1;
    int cashCode = 1;
};

enum class ReceiptState {
    Open,       ///< Being sold.
    Committing, ///< Handed to the loyalty system; not known to be safe with it yet.
    Committed,
    Cancelled,
};

/// As the store and JSON spell it.
QString nameOf(ReceiptState state);
/// Empty for nothing to report.
QString nameOf(Report report);

/// How a receipt's report ended.
struct ReportRecord
{
    Report outcome = Report::None;
    QString answer; ///< The service's last one, shortened, without the secret key.
    QString told;   ///< What the cashier was told of it.
};

/// A receipt with its place in the store.
struct StoredReceipt
{
    QSharedPointer<AbstractDocument> document; ///< Null for no receipt.
    qint64 row = 0;                            ///< 0 while it is only in memory.
    int revision = -1;                         ///< The document's, as it is stored.
    ReceiptState state = ReceiptState::Open;   ///< As it is stored.

    /// Whether the store holds all of it.
    bool isStored() const { return row != 0 && document && revision == document->getRevision(); }
};

/// What the store says of a receipt.
struct ReceiptRecord
{
    qint64 row = 0;
    DocumentHeader header;
    ReceiptState state = ReceiptState::Open;
    ReportRecord report;
    QDateTime changed; ///< UTC.
    QString document;  ///< JSON; in a list left empty.
};

/// A moment in a receipt's life.
struct HistoryEntry
{
    QDateTime at; ///< UTC.
    ReceiptState state = ReceiptState::Open;
    ReportRecord report;
};

/// Which receipts to list.
struct ReceiptFilter
{
    std::optional<Report> outcome; ///< Committed ones with that outcome only.
    QDate since;                   ///< Begun on that day or later; invalid for all.
    int limit = 1'000;             ///< The latest so many.
};

/// The till's receipts, their numbers and its queue in one file, "till.db" in the data directory.
///
/// Each operation is one transaction and survives a power cut once it has answered; it fails as a
/// whole, with `lastError` set, and the next one finds the file afresh. A receipt that could not be
/// stored lives on in its `StoredReceipt` and is stored by the next call for it. One store belongs
/// to one thread; stores of several threads and processes share the file.
class Store
{
public:
    explicit Store(const QString &directory);
    ~Store();
    Q_DISABLE_COPY_MOVE(Store)

    static QString fileIn(const QString &directory);

    /// Opens the file, which is created when missing, and reads all of it when damage was met there
    /// before. A damaged one is put aside whole, into "damaged/"; what can still be read of open
    /// receipts, interrupted commits and waiting messages comes into a new one. \return What the
    /// cashier is to be told, empty for nothing.
    QString prepare();
    /// Whether the file was made by a newer version or for something else: nothing can be kept.
    bool isForeign() const;

    /// Opens a receipt with the next number of its register. Always gives one: when it cannot be
    /// stored it has a number all the same, which no later receipt gets.
    StoredReceipt open(const TillPlace &place, int kind);
    /// Stores what has changed of the receipt, in the state given.
    [[nodiscard]] bool save(StoredReceipt &receipt, ReceiptState state);
    /// Stores the receipt as committed together with its messages.
    [[nodiscard]] bool saveCommitted(StoredReceipt &receipt, const ReportRecord &report,
                                     const QList<QueuedMessage> &messages);
    int shift(const TillPlace &place);
    /// Begins the next shift. When that cannot be stored it has begun all the same.
    [[nodiscard]] bool closeShift(const TillPlace &place);

    /// The receipts in that state, oldest first, at most so many of a row above `afterRow`. One
    /// that cannot be read comes without a document.
    QList<StoredReceipt> receiptsIn(ReceiptState state, int limit, qint64 afterRow = 0);
    std::optional<qint64> countIn(ReceiptState state);
    /// The committed receipt of that number, of several the latest; nothing when there is none.
    std::optional<StoredReceipt> committedReceipt(int number);
    /// Why the last receipt without a document has none.
    const QString &documentError() const { return unreadable; }

    std::optional<QList<ReceiptRecord>> list(const ReceiptFilter &filter);
    /// The receipts of that number, of all registers and data, latest first.
    std::optional<QList<ReceiptRecord>> find(int number);
    std::optional<QList<HistoryEntry>> history(qint64 row);
    /// How many committed receipts there are with that outcome.
    std::optional<qint64> countReported(Report outcome);
    /// How the delivery of the loyalty system's queue stands.
    DeliveryState deliveryState(const QString &queue);

    /// Removes the oldest receipts begun before that day with which nothing is left to be done, at
    /// most so many, and gives their place in the file back. \return How many; nothing when it
    /// failed.
    std::optional<int> removeBefore(const QDate &day, int limit);
    /// Does several operations as one: all of them or, when one answers false, none.
    [[nodiscard]] bool together(const std::function<bool()> &operations);
    /// Takes over a receipt kept elsewhere until now; one that is here already stays as it is.
    [[nodiscard]] bool adopt(const QSharedPointer<AbstractDocument> &document, ReceiptState state);
    /// Has numbers go on behind these at least.
    [[nodiscard]] bool adoptNumbers(const TillPlace &place, int shift, int number);

    /// Why the last call failed, naming the file; empty after a success.
    QString lastError() const { return database.lastError(); }

private:
    struct Numbers
    {
        int shift = 1;
        int number = 0;
    };

    struct Unfinished
    {
        QList<StoredReceipt> receipts;
        QList<QueuedMessage> messages;
    };

    Unfinished readUnfinished();
    bool takeUp(const Unfinished &left);
    static std::optional<QList<ReceiptRecord>>
    records(const std::optional<QList<Database::Row>> &rows);
    std::optional<Numbers> readNumbers(const TillPlace &place);
    bool writeNumbers(const TillPlace &place, const Numbers &given);
    int nextNumber(const std::optional<Numbers> &known);
    bool insert(StoredReceipt &receipt, ReceiptState state);
    bool write(StoredReceipt &receipt, ReceiptState state);
    StoredReceipt read(const Database::Row &row, ReceiptState state);

    Database database;
    std::unique_ptr<ReservedNumbers> reserved;
    Numbers last; ///< Given last, stored or not.
    QString unreadable;
};

} // namespace till
