#pragma once

#include "till/core/saleevent.h"
#include "till/core/store.h"
#include "till/core/unstoredmessages.h"

#include <host/receiptkeeper.h>

#include <QObject>

#include <optional>

class BasicLoyaltySystem;

namespace till {

class ToldTexts;

/// Who takes part in a sale. All must outlive it.
struct SaleParts
{
    BasicLoyaltySystem &system;
    Store &store;
    UnstoredMessages &unstoredMessages;
    ToldTexts &told; ///< Set as the presenter of all dialogs.
    TillPlace place;
};

/// The receipt at the till and what the cashier can do with it.
///
/// Every step tells by signals what it did or why it did not; a step that is refused changes
/// nothing. The receipt is stored before `happened` tells of a change. When it cannot be stored,
/// the signal comes all the same, behind one that says so, and the sale goes on.
///
/// Belongs to one thread, the loyalty system's. A step blocks while the loyalty system asks the
/// cashier or the service.
class Sale : public QObject, private ReceiptKeeper
{
    Q_OBJECT
public:
    static constexpr double maximumSum = 999'999'999.99;
    static constexpr double maximumPrice = 9'999'999.99;
    static constexpr double maximumQuantity = 99'999.999;

    explicit Sale(const SaleParts &parts);
    ~Sale() override;
    Q_DISABLE_COPY_MOVE(Sale)

    /// Takes up what an earlier run left: commits again the receipts whose commit was interrupted
    /// and opens the open one. The service knows an order by its identifier, so that a second
    /// commit changes nothing there.
    void recover();

    void open(int kind);
    /// Opens a sale when no receipt is open.
    void add(const QString &code, const QString &name, double price, double quantity);
    void changeQuantity(int position, double quantity);
    void remove(int position);
    void discount(int position, double sum, int campaign, int mode, int source);
    /// Puts a card on the receipt and identifies its holder. When the holder cannot be identified
    /// there is no card on the receipt afterwards, not even the one before.
    void enterCard(const QString &text);
    void trigger(int action);
    /// Takes the card and all that the loyalty system knows off the receipt.
    void clearLoyaltyData();
    void commit();
    /// Abandons the receipt. Whether the cashier means it, the face has asked before.
    void cancel();
    void closeShift();
    /// Reports a committed receipt once more. \return Whether the service or the queue has it now.
    bool report(int number);

    /// The receipt at hand; nothing when none is open.
    std::optional<ReceiptView> receipt() const;
    int shift();
    /// Numbers of the receipts that are only in memory. Tries first to store them.
    QList<int> unstored();

signals:
    void happened(const till::SaleEvent &event);
    /// There may be messages to deliver.
    void messagesQueued();

private:
    /// A committed receipt that is not in the store yet; its messages are in `UnstoredMessages`.
    struct UnstoredReceipt
    {
        StoredReceipt receipt;
        ReportRecord report;
        bool isTold = false; ///< Whether the cashier knows that it is not.
    };

    bool keep(const QSharedPointer<AbstractDocument> &document) override;
    void refuse(SaleEvent details);
    bool hasReceipt();
    bool hasNoReceipt();
    QSharedPointer<GoodsItem> findPosition(int number);
    void tellPosition(SaleEvent::Kind kind, int position, double sum = 0);
    void tellUnstored(int number);
    void tellUnreadable(const StoredReceipt &receipt);
    bool save();
    void attach(const QSharedPointer<AbstractDocument> &receipt);
    void takeCardOff();
    void identify(const QString &number);
    void reopen(const StoredReceipt &receipt);
    void restore(const QSharedPointer<AbstractDocument> &receipt);
    Report handOver(const StoredReceipt &receipt, bool isTold);
    void storeCommitted();
    Report reportAgain(const StoredReceipt &receipt);
    void reportInterrupted();

    SaleParts parts;
    StoredReceipt current;            ///< Without a document when no receipt is open.
    bool isUnstoredTold = false;      ///< Whether the cashier knows that it is not in the store.
    QList<UnstoredReceipt> committed; ///< Not in the store yet.
};

} // namespace till
