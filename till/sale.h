#pragma once

#include <QList>
#include <QSharedPointer>
#include <QString>

#include <functional>
#include <optional>

class AbstractDocument;
class BasicLoyaltySystem;
class GoodsItem;

namespace till {

class Console;
class ReceiptCounter;
class ReceiptStore;

/// Where the till stands.
struct TillPlace
{
    int shopCode = 1;
    int cashCode = 1;
};

/// Who takes part in a sale. All must outlive it.
struct SaleParts
{
    BasicLoyaltySystem &system;
    ReceiptStore &store;
    ReceiptCounter &counter;
    Console &console;
    TillPlace place;
};

/// The receipt at the till and what the cashier can do with it.
///
/// Every step says on the console what it did or why it did not; a step that is refused changes
/// nothing. The receipt is saved before the cashier sees a change. When it cannot be saved the
/// cashier is told and the sale goes on.
class Sale
{
public:
    static constexpr double maximumSum = 999'999'999.99;

    explicit Sale(const SaleParts &parts);
    ~Sale();
    Q_DISABLE_COPY_MOVE(Sale)

    /// Takes up what an earlier run left: commits again every receipt whose commit was interrupted
    /// and opens the open one. The service knows an order by its identifier, so that a second
    /// commit changes nothing there.
    void recover();

    /// `kind` is 1 for a sale and 2 for a return.
    void open(int kind);
    void add(const QString &code, const QString &name, double price, double quantity);
    void discount(int posnum, double sum, int campaignCode, int mode, int source);
    void show();
    /// Puts a card on the receipt and identifies its holder. When the holder cannot be identified
    /// there is no card on the receipt afterwards, not even the one before.
    void enterCard(const QString &text);
    void showHolder();
    void trigger(int actionCode);
    /// Takes the card and all that the loyalty system knows off the receipt.
    void clearLoyaltyData();
    void commit();
    void cancel();
    void closeShift();
    /// Whether nothing would be lost if the till ended now. Tries first to bring what is only in
    /// memory to the disk or to the service, and names the receipts that are left.
    bool mayEnd();

    /// Called after every commit.
    void setAfterCommit(std::function<void()> callback) { afterCommit = std::move(callback); }

private:
    using Receipt = QSharedPointer<AbstractDocument>;

    /// A committed receipt on its way out of the till.
    struct Committed
    {
        Receipt receipt;
        bool isOnDisk = true;    ///< As it was committed.
        bool isReported = false; ///< Its order is at the service or in the queue.
    };
    static bool isUnreported(const Committed &committed) { return !committed.isReported; }

    bool hasReceipt();
    bool hasNoReceipt();
    void openIfNeeded();
    void save();
    void attach(const Receipt &receipt, const QString &file);
    void takeCardOff();
    void tellUnsaved(const std::optional<QString> &error);
    bool restore(const Receipt &receipt, const QString &file);
    bool handOver(Committed committed);
    std::optional<QString> file(Committed &committed);
    void fileUnfinished();
    void reportUnfinished();
    void recoverOpenReceipt();

    SaleParts parts;
    Receipt document;
    bool isSaved = true;         ///< Whether the file of the receipt being sold is up to date.
    QList<Committed> unfinished; ///< Not reported yet, or not in their place on the disk.
    std::function<void()> afterCommit = [] {};
};

} // namespace till
