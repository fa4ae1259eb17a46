#pragma once

#include "till/core/saleevent.h"
#include "till/core/store.h"

#include <host/messagesink.h>
#include <host/receiptkeeper.h>

#include <QObject>
#include <QStringList>

#include <optional>

class BasicLoyaltySystem;

namespace http {
class Response;
}

namespace till {

/// The current receipt and the cashier's steps on it.
///
/// Every step emits `happened` with its result or the reason for its refusal; a refused step
/// changes nothing. A change is stored before it is told. When the disk refuses the change,
/// `NotStored` is told first, and the sale goes on.
///
/// Use it only in the loyalty system's thread. A step blocks while the loyalty system waits for the
/// cashier or the service.
class Sale : public QObject, private ReceiptKeeper, private MessageSink
{
    Q_OBJECT
public:
    static constexpr double maximumSum = 999'999'999.99;
    static constexpr double maximumPrice = 9'999'999.99;
    static constexpr double maximumQuantity = 99'999.999;

    /// The loyalty system and the store must outlive the sale.
    Sale(BasicLoyaltySystem &system, Store &store, const TillPlace &place);
    ~Sale() override;
    Q_DISABLE_COPY_MOVE(Sale)

    /// Finishes the work of an earlier run: commits interrupted receipts again and reopens the open
    /// receipt. The service knows an order by its identifier, so a second commit adds no order.
    void recover();

    void open(int kind);
    /// Adds a position, on a new sale receipt when none is open.
    void add(const QString &code, const QString &name, double price, double quantity);
    void changeQuantity(int position, double quantity);
    void remove(int position);
    void discount(int position, double sum, int campaign, int mode, int source);
    /// Puts a card on the receipt and identifies its holder. A failure leaves the receipt without a
    /// card, even when it had one before.
    void enterCard(const QString &text);
    void trigger(int action);
    /// Takes the card and the loyalty data off the receipt.
    void clearLoyaltyData();
    void commit();
    /// Abandons the receipt without asking: the face asks the cashier before.
    void cancel();
    void closeShift();
    /// Reports a committed receipt again. \return Whether the service or the queue has it now.
    bool report(int number);

    /// The current receipt; nothing when none is open.
    std::optional<ReceiptView> receipt() const;
    int shift();
    /// Keeps the service's answer for the report of the receipt being committed.
    void noteAnswer(const http::Response &response);
    /// Keeps a message or error shown to the cashier for the same report.
    void noteTold(const QString &text) { told.append(text); }

signals:
    void happened(const till::SaleEvent &event);
    /// There may be messages to deliver.
    void messagesQueued();

private:
    bool keep(const QSharedPointer<AbstractDocument> &document) override;
    bool put(const QString &queue, const QJsonObject &message, const QString &tag) override;
    void refuse(SaleEvent details);
    bool hasReceipt();
    bool hasNoReceipt();
    QSharedPointer<GoodsItem> findPosition(int number);
    void tellPosition(SaleEvent::Kind kind, int position, double sum = 0);
    bool tellSaved(const Store::Saved &saved, int number);
    void tellUnreadable(const StoredReceipt &receipt);
    bool save();
    void attach(const QSharedPointer<AbstractDocument> &receipt);
    void takeCardOff();
    void identify(const QString &number);
    void reopen();
    void restore(const QSharedPointer<AbstractDocument> &receipt);
    Report handOver(const QSharedPointer<AbstractDocument> &receipt);
    Report reportAgain(const QSharedPointer<AbstractDocument> &receipt);
    void reportInterrupted();

    BasicLoyaltySystem &system;
    Store &store;
    TillPlace place;
    QSharedPointer<AbstractDocument> current; ///< Null when no receipt is open.
    QList<QueuedMessage> queued;              ///< Messages of the loyalty system during a commit.
    QJsonObject answer;                       ///< The service's last answer during a commit.
    QStringList told;                         ///< The messages and errors shown during a commit.
    QList<qint64> interrupted;                ///< Rows of receipts whose commit was interrupted.
};

} // namespace till
