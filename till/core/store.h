#pragma once

#include "till/core/receiptrecord.h"

#include <host/clock.h>
#include <host/database.h>
#include <host/restclient.h>

#include <QHash>
#include <QMap>
#include <QObject>
#include <QSharedPointer>

#include <mutex>
#include <tuple>

namespace till {

/// The name of the loyalty plugin's queue.
QString loyaltyQueue();

/// A receipt read from the store.
struct StoredReceipt
{
    qint64 row = 0;
    ReceiptState state = ReceiptState::Open;
    QSharedPointer<AbstractDocument> document = {}; ///< Null when it is unreadable.
    QString error = {};                             ///< Why it is unreadable.
};

/// The service's verdict on a message.
enum class Verdict {
    Accepted,
    Refused,  ///< For good.
    PutOff,   ///< Not now, for a reason that does not blame the message.
    NoAnswer, ///< No answer from the service.
};

/// Keeps the till's receipts, their numbers and the queue in one file, "till.db" in the data
/// directory.
///
/// The store accepts every write. A write that the disk refuses waits in memory, unsaved and in
/// order. Each later write tries it again first, and reads see it as if it were saved. A saved
/// write survives a power cut. Several threads may use one store, and several processes one file;
/// at most one process may sell.
class Store : public QObject
{
    Q_OBJECT
public:
    /// The result of a write. The error says why it is unsaved; the write is not lost.
    using Saved = tl::expected<void, QString>;
    template<typename T>
    using Result = tl::expected<T, QString>;

    enum class Access {
        Full,
        ReadOnly, ///< Reads the known tables of a newer version's file, too.
    };

    explicit Store(const QString &directory, Access access = Access::Full);
    /// Tries once more to save what is unsaved.
    ~Store() override;
    Q_DISABLE_COPY_MOVE(Store)

    static QString fileIn(const QString &directory);
    /// How many unsaved receipts the till of that directory has, or had when it ended.
    static int unsavedIn(const QString &directory);

    /// Opens the file, and checks all of it when an earlier run met damage. A damaged file goes to
    /// "damaged/"; its readable open receipts, interrupted commits and waiting messages go into a
    /// new file. \return A note for the integrator, empty for none. Fails when the file is newer or
    /// no till's.
    [[nodiscard]] Result<QString> prepare();

    /// Makes a receipt with the register's next number, which no later receipt gets. `save` brings
    /// it into the store.
    QSharedPointer<AbstractDocument> newReceipt(const TillPlace &place, int kind);
    /// Saves the receipt's changes and its state.
    Saved save(const QSharedPointer<AbstractDocument> &receipt, ReceiptState state);
    /// Saves the receipt as committed, with messages that replace its earlier ones.
    Saved saveReport(const QSharedPointer<AbstractDocument> &receipt, const ReportRecord &report,
                     const QList<QueuedMessage> &messages);
    int shift(const TillPlace &place);
    /// Ends the shift and begins the next one.
    Saved closeShift(const TillPlace &place);
    /// Tries to save all receipts. \return The numbers of those still unsaved.
    QList<int> unsaved();

    /// The rows of receipts that were saved in that state, oldest first.
    Result<QList<qint64>> rowsIn(ReceiptState state);
    StoredReceipt read(qint64 row);
    /// The latest committed receipt with that number; a null document without an error for none.
    StoredReceipt committedReceipt(int number);

    /// The latest receipts that pass the filter, latest first.
    Result<QList<ReceiptRecord>> list(const ReceiptFilter &filter);
    Result<QList<HistoryEntry>> history(qint64 row);
    /// The number of committed receipts with that outcome.
    Result<qint64> countReported(Report outcome);
    /// The counted requests to the service.
    Result<QList<ExchangeCount>> exchanges();
    /// The state of the loyalty queue's delivery.
    DeliveryState deliveryState();

    /// The message to deliver next; nothing when none waits. `unsavedOnly` skips those on the disk.
    Result<std::optional<QueuedMessage>> nextMessage(bool unsavedOnly = false);
    /// Notes the service's verdict on a message. Accepted messages leave the disk in groups, so
    /// after a kill the service gets some of them again and recognises them.
    void settle(QueuedMessage message, Verdict verdict, const QString &reason = {});

    /// The waiting or the parked messages on the disk, in order, at most `limit`.
    Result<QList<QueuedMessage>> messages(bool parked, int limit);
    /// Parks waiting messages by hand, or puts parked ones back at their old places; all at once.
    /// \return How many there were.
    Result<int> setParked(const QList<qint64> &ids, bool parked);

    /// Removes at most `limit` of the oldest finished receipts begun more than `days` days ago, and
    /// returns some free space to the file system. A receipt that the till began after a younger
    /// one stays, whatever its own date. \return How many were removed.
    Result<int> removeOld(int days, int limit);

    /// Makes the next call open the file again, which a till may have replaced.
    void reopen();
    /// Counts a request to the service that ends now; the next write saves the count.
    void count(const RestClient::Exchange &exchange);

signals:
    /// An unsaved receipt has been saved. Emitted in the thread that saved it.
    void savedLate(int number);
    /// The delivery's state has changed. Emitted in any thread that uses the store.
    void deliveryChanged(const till::DeliveryState &state);

private:
    /// One public call: holds the mutex, and emits the signals after releasing it.
    class Call
    {
    public:
        explicit Call(Store &store)
            : store(store)
            , lock(store.mutex)
        {}
        ~Call();
        Q_DISABLE_COPY_MOVE(Call)

    private:
        Store &store;
        std::unique_lock<std::mutex> lock;
    };
    /// A receipt with its unsaved changes.
    struct Unsaved
    {
        /// The record with the outcome of its messages' delivery so far.
        ReceiptRecord current() const;

        ReceiptRecord record;
        QSharedPointer<AbstractDocument> document; ///< Read only for a committed receipt.
        QByteArray head;                           ///< JSON without the positions.
        QMap<int, QByteArray> positions; ///< JSON of the changed ones; empty for a removal.
        bool isReport = false;           ///< Whether its messages replace those on the disk.
        QList<QueuedMessage> messages;
        bool isLate = false; ///< Whether the disk has refused it before.
    };
    /// A message on the disk as the service's verdict, unsaved as yet, leaves it.
    struct Settled
    {
        QueuedMessage message;
        bool isAccepted = false;
    };
    /// The latest shift and receipt number of a register.
    struct RegisterNumbers
    {
        int shift = 1;
        int number = 0;
    };

    Unsaved &take(const QSharedPointer<AbstractDocument> &receipt, ReceiptState state);
    Unsaved *findUnsaved(const DocumentHeader &header);
    int patienceOfWrites() const;
    Saved flush(int patience);
    void writeAll(Database::Transaction &disk, QHash<qint64, qint64> &ids) const;
    RegisterNumbers &numbersOf(const TillPlace &where);
    void reserveNumbers();
    void noteUnsaved();

    template<typename T>
    Result<QList<T>> rows(T (*read)(const Database::Row &), const char *sql,
                          const QVariantList &values = {})
    {
        return database.run(sql, values).map([read](const Database::Rows &found) {
            QList<T> records;
            for (const auto &row : found)
                records.append(read(row));
            return records;
        });
    }
    StoredReceipt readRow(qint64 row);
    Result<std::optional<QueuedMessage>> nextOnDisk();
    std::optional<QueuedMessage> nextInMemory() const;
    DeliveryState readDeliveryState();
    Result<QDate> latestSureDay();

    QString repair(const QString &damage);
    DatabaseResult<void> takeUp(Database &fresh);
    qint64 lastIdOf(const char *everGiven, const char *stillThere);
    QString replaceDamaged();
    QString putAside();
    QString repairedFile() const;

    const QString directory;
    std::mutex mutex;
    Database database;

    QList<Unsaved> receipts;
    QList<Settled> settled;
    QList<ExchangeCount> counts;
    bool numbersWait = false;

    TillPlace place;         ///< The register of `numbers`.
    RegisterNumbers numbers; ///< The numbers given last, saved or not.
    int reserved = 0;        ///< The highest number reserved for a later store.
    /// The receipt's revision and state at its last save. Kept alive, so that no other receipt gets
    /// its address.
    std::tuple<QSharedPointer<AbstractDocument>, int, ReceiptState> taken;
    Clock::Time firstSettled;       ///< When the oldest of `settled` was.
    qint64 lastInMemory = 0;        ///< The id of the latest unsaved message, 0 or below.
    QHash<qint64, qint64> savedIds; ///< Ids on the disk by the ids that messages had unsaved.
    qint64 dataVersion = 0;         ///< SQLite's counter of other processes' writes.

    int toldUnsaved = 0;
    QList<int> late;              ///< Receipts saved late, not told yet.
    bool messagesChanged = false; ///< Since `toldState`.
    DeliveryState toldState;
};

} // namespace till
