#pragma once

#include "host/basicplugin.h"
#include "host/documentwatcher.h"
#include "host/export.h"
#include "host/loyaltytypes.h"

#include <QHash>
#include <QList>
#include <QSharedPointer>
#include <QStringList>
#include <QVariant>
#include <QVariantMap>
#include <QtPlugin>

class Client;
class DocumentCardRecord;
class DocumentImpactDetail;

/// Base of the till's loyalty systems: what the till asks of each of them, with neutral answers.
///
/// A system overrides what it takes part in. Unless an operation says otherwise, its default does
/// nothing, and answers true where false would stop the sale, 0, or an empty list.
class HOST_EXPORT BasicLoyaltySystem : public virtual BasicPlugin, public DocumentWatcher
{
public:
    BasicLoyaltySystem() = default;
    ~BasicLoyaltySystem() override;

    // Identification.

    /// Identifies the holder of a card of the receipt. Default: false, "not this system's card".
    virtual bool identifyByCard(QSharedPointer<DocumentCardRecord> &card, ECardNumberType type);
    /// Asks the system for the state of the receipt's holder.
    virtual bool request();

    // The receipt's end. `requestCommit` comes before payment is closed, then either `commit` or
    // `rollback`; `cancel` when the cashier abandons the receipt.

    virtual bool requestCommit(const QSharedPointer<AbstractDocument> &document);
    virtual bool commit(const QSharedPointer<AbstractDocument> &document);
    virtual bool rollback(const QSharedPointer<AbstractDocument> &document);
    virtual bool cancel(const QSharedPointer<AbstractDocument> &document);
    /// Called when an interrupted receipt has been opened again with its plugin data.
    virtual bool restoreLoyaltySystem();

    // Points. The neutral system has none: nothing is earned or spent.

    virtual bool spendPoints(double points);
    virtual void recalculatePointsForEarn();
    virtual void calculatePointsForEarnByQualifier(int qualifier);
    virtual void removeEarnByValutCode(int valutCode);
    virtual void removeEarnAfterClose();
    virtual void recalculateAllPoints();
    virtual bool hasPointsForSpend() const;
    virtual double getPointsForSpend() const;
    virtual bool hasPointsForEarn() const;
    virtual double getPointsForEarn() const;
    virtual bool hasBonusImpacts() const;
    virtual QList<QSharedPointer<DocumentImpactDetail>> getDiscountImpacts() const;
    virtual QList<QSharedPointer<DocumentImpactDetail>> getBonusImpactsForSpend() const;
    virtual QList<loyalty::BonusRecord> getBonusRecords() const;

    // Texts.

    virtual QStringList getMessagesToCashier() const;
    virtual QStringList getMessagesToClient() const;
    virtual QStringList getMessagesToClientDisplay() const;
    /// The last error in the till's language; empty when the last operation went well.
    virtual QString getLastErrorString() const;
    virtual void clearLastErrorString();

    // The card and its holder.

    virtual void takeForCustomer();
    /// Printable information about the receipt's card.
    virtual QString getCardInfo() const;
    virtual bool isAllowPartialPointsSpend() const;
    virtual void setPointsForSpend(double points);
    virtual int getRoundPrecisionForSpend() const;
    virtual void setRoundPrecisionForSpend(int digits);
    /// Whether the till's own discounts go together with this system. Default: true.
    virtual bool isAllowInternalDiscount() const;
    virtual bool useDiscOnChangeWithBonusPayment() const;
    virtual void fillCardOwnerInfo(const QSharedPointer<Client> &client) const;
    virtual CardMode getCardMode() const;
    virtual QList<loyalty::Slip> getSlips() const;
    virtual bool cardReplace(const QString &oldNumber, const QString &newNumber);
    virtual ECardNumberType getCardNumberTypeToAddCardInSubtotal() const;
    /// Takes a card number out of an input. Default: none, without a message.
    virtual loyalty::CardNumberAnswer getCardNumber(const loyalty::CardNumberInputData &input);

    // Moments of the receipt.

    virtual bool checkOption(LoyaltySystemOption option) const;
    virtual double requestInputPointsForSpendByLoyalty();
    virtual bool registerCheck();
    virtual bool couponBelongsToSystem(const QString &coupon) const;
    virtual void clearAfterClose();
    virtual bool payCheck();
    virtual void recalculatePointsForSpend();
    virtual bool beforePutoutCheck();
    virtual bool afterPutoutCheck();
    virtual bool revealCheck();
    bool init() override;
    void deinit() override;
    virtual void distributeBonusRecord(const loyalty::BonusRecord &record);
    virtual QList<loyalty::BonusRecord> getBonusImpactsLimits() const;

    // The system and its receipt.

    /// The card record of the receipt at hand; null when there is none.
    virtual QSharedPointer<DocumentCardRecord> getCard() const;
    virtual bool hasCard() const;
    /// Called by the till after `init`.
    virtual void registerLoyaltySystem();
    virtual void deregisterLoyaltySystem();
    /// Whether the till asks this system at all.
    bool isRegistered() const { return registered; }
    virtual void setOption(LoyaltySystemOption option, bool on);
    /// Under which key a receipt keeps this system's plugin data.
    virtual QString getStoreDataKey() const;
    /// Keeps a value with the receipt at hand; without a receipt nothing is kept.
    virtual void setPluginData(const QString &key, const QVariant &value);
    /// Replaces all that this system keeps with the receipt at hand.
    virtual void setPluginData(const QVariantMap &data);
    /// What `setPluginData` kept under the key, else `defaultValue`.
    virtual QVariant getPluginData(const QString &key, const QVariant &defaultValue) const;
    virtual QVariantMap getPluginData() const;
    /// Discards what the system knows of the receipt's holder. The plugin data stays.
    virtual void clearLoyaltyData();
    /// Removes everything this system keeps with the receipt at hand.
    virtual void clearData();

protected:
    tr::Tr lastError;
    int systemType = 0; ///< The system's number in the till's list of loyalty systems.

private:
    QSet<LoyaltySystemOption> options;
    int roundPrecisionForSpend = 2;
    bool registered = false;
};

Q_DECLARE_INTERFACE(BasicLoyaltySystem, "LoyaltySystem")
