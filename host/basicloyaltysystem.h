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

/// Base of the till's loyalty systems: every call that the till may make, with neutral answers.
///
/// A system overrides the calls it needs. A neutral answer stops no sale, finds nothing and changes
/// nothing. The till of this project never calls the operations on points, coupons and slips; they
/// are for hosts that have these.
class HOST_EXPORT BasicLoyaltySystem : public virtual BasicPlugin, public DocumentWatcher
{
public:
    // Identification.

    /// Identifies the holder of a card on the receipt; may replace the record behind the reference.
    /// False, with the reason in `lastError`, when the card is not this system's or has no known
    /// holder.
    virtual bool identifyByCard(QSharedPointer<DocumentCardRecord> & /*card*/,
                                ECardNumberType /*type*/)
    {
        return false;
    }
    /// Asks the system for the state of the card's holder.
    virtual bool request() { return true; }

    // The receipt's end.

    /// Before the payment is closed. \return False to keep the receipt open.
    virtual bool requestCommit(const QSharedPointer<AbstractDocument> & /*document*/)
    {
        return true;
    }
    /// The receipt is paid: the system reports it now.
    virtual bool commit(const QSharedPointer<AbstractDocument> & /*document*/) { return true; }
    /// The receipt stays open after `requestCommit`.
    virtual bool rollback(const QSharedPointer<AbstractDocument> & /*document*/) { return true; }
    /// The cashier abandons the receipt.
    virtual bool cancel(const QSharedPointer<AbstractDocument> & /*document*/) { return true; }
    /// An interrupted receipt has been opened again with its plugin data.
    virtual bool restoreLoyaltySystem() { return true; }

    // Points, in the system's own unit. The neutral system has none: nothing is earned or spent.

    /// Spends points on the receipt. \return Whether it could.
    virtual bool spendPoints(double points) { return points == 0; }
    virtual void recalculatePointsForEarn() {}
    virtual void calculatePointsForEarnByQualifier(int /*qualifier*/) {}
    virtual void removeEarnByValutCode(int /*valutCode*/) {}
    virtual void removeEarnAfterClose() {}
    virtual void recalculateAllPoints()
    {
        recalculatePointsForEarn();
        recalculatePointsForSpend();
    }
    virtual bool hasPointsForSpend() const { return getPointsForSpend() > 0; }
    virtual double getPointsForSpend() const { return 0; }
    virtual bool hasPointsForEarn() const { return getPointsForEarn() > 0; }
    virtual double getPointsForEarn() const { return 0; }
    virtual bool hasBonusImpacts() const { return !getBonusImpactsForSpend().isEmpty(); }
    /// The discounts this system gives on the current receipt.
    virtual QList<QSharedPointer<DocumentImpactDetail>> getDiscountImpacts() const { return {}; }
    /// The discounts paid for with points.
    virtual QList<QSharedPointer<DocumentImpactDetail>> getBonusImpactsForSpend() const
    {
        return {};
    }
    /// The points that the receipt earns, by position.
    virtual QList<loyalty::BonusRecord> getBonusRecords() const { return {}; }

    // Texts.

    /// Shown to the cashier with the receipt.
    virtual QStringList getMessagesToCashier() const { return {}; }
    /// Printed for the customer.
    virtual QStringList getMessagesToClient() const { return {}; }
    /// Shown on the display that faces the customer.
    virtual QStringList getMessagesToClientDisplay() const { return {}; }
    /// The last error in the till's language; empty when the last operation went well.
    virtual QString getLastErrorString() const { return lastError.toString(); }
    /// Forgets the last error.
    virtual void clearLastErrorString() { lastError = {}; }

    // The card and its holder.

    virtual void takeForCustomer() {}
    /// Printable information about the receipt's card.
    virtual QString getCardInfo() const { return {}; }
    /// Whether fewer points than the receipt allows may be spent.
    virtual bool isAllowPartialPointsSpend() const { return false; }
    virtual void setPointsForSpend(double /*points*/) {}
    /// To how many decimal places spent points are rounded.
    virtual int getRoundPrecisionForSpend() const { return roundPrecisionForSpend; }
    virtual void setRoundPrecisionForSpend(int digits) { roundPrecisionForSpend = digits; }
    /// Whether the till's own discounts go together with this system.
    virtual bool isAllowInternalDiscount() const { return true; }
    virtual bool useDiscOnChangeWithBonusPayment() const { return false; }
    /// Fills in the card's holder as the system knows them.
    virtual void fillCardOwnerInfo(const QSharedPointer<Client> & /*client*/) const {}
    /// The kind of the receipt's card at this system.
    virtual CardMode getCardMode() const { return CardMode::Unknown; }
    /// Texts to print after the receipt, one slip each.
    virtual QList<loyalty::Slip> getSlips() const { return {}; }
    /// Replaces a holder's card number. \return Whether it could.
    virtual bool cardReplace(const QString & /*oldNumber*/, const QString & /*newNumber*/)
    {
        return false;
    }
    /// The meaning of a card number entered after the receipt was totalled.
    virtual ECardNumberType getCardNumberTypeToAddCardInSubtotal() const
    {
        return ECardNumberType::Typed;
    }
    /// Reads a card number out of an input. The neutral system finds none and gives no reason.
    virtual loyalty::CardNumberAnswer getCardNumber(const loyalty::CardNumberInputData & /*input*/)
    {
        return {};
    }

    // Moments of the receipt. The answer false stops the till.

    /// Whether `setOption` has switched the option on.
    virtual bool checkOption(LoyaltySystemOption option) const { return options.contains(option); }
    /// Asks the cashier how many points to spend; 0 for none.
    virtual double requestInputPointsForSpendByLoyalty() { return 0; }
    virtual bool registerCheck() { return true; }
    /// Whether this system takes the coupon.
    virtual bool couponBelongsToSystem(const QString & /*coupon*/) const { return false; }
    virtual void clearAfterClose() {}
    virtual bool payCheck() { return true; }
    virtual void recalculatePointsForSpend() {}
    virtual bool beforePutoutCheck() { return true; }
    virtual bool afterPutoutCheck() { return true; }
    virtual bool revealCheck() { return true; }
    bool init() override { return BasicPlugin::init(); }
    void deinit() override { BasicPlugin::deinit(); }
    virtual void distributeBonusRecord(const loyalty::BonusRecord & /*record*/) {}
    virtual QList<loyalty::BonusRecord> getBonusImpactsLimits() const { return {}; }

    // The system and its receipt.

    /// The card record of the current receipt; null when there is none.
    virtual QSharedPointer<DocumentCardRecord> getCard() const;
    virtual bool hasCard() const { return !getCard().isNull(); }
    /// Called by the till after `init`.
    virtual void registerLoyaltySystem() { registered = true; }
    /// The till stops asking the system; called before `deinit`.
    virtual void deregisterLoyaltySystem() { registered = false; }
    /// Whether the till asks this system.
    bool isRegistered() const { return registered; }
    /// Switches an option; all are off at first. Only callers of `checkOption` act on it.
    virtual void setOption(LoyaltySystemOption option, bool on);
    /// The key of this system's plugin data in a receipt.
    virtual QString getStoreDataKey() const;
    /// Stores a value with the current receipt, as the receipt's `setPluginData` does; does nothing
    /// without a receipt.
    virtual void setPluginData(const QString &key, const QVariant &value);
    /// Replaces all of this system's data in the current receipt.
    virtual void setPluginData(const QVariantMap &data);
    /// The value that `setPluginData` stored under the key, also before a restart; else
    /// `defaultValue`.
    virtual QVariant getPluginData(const QString &key, const QVariant &defaultValue) const;
    /// All of this system's data in the current receipt; empty without a receipt.
    virtual QVariantMap getPluginData() const;
    /// Forgets the card's holder. The plugin data stays.
    virtual void clearLoyaltyData() { clearLastErrorString(); }
    /// Removes all of this system's data from the current receipt.
    virtual void clearData() { setPluginData(QVariantMap()); }

protected:
    tr::Tr lastError;
    int systemType = 0; ///< The system's number in the till's list of loyalty systems.

private:
    QSet<LoyaltySystemOption> options;
    int roundPrecisionForSpend = 2;
    bool registered = false;
};

Q_DECLARE_INTERFACE(BasicLoyaltySystem, "LoyaltySystem")
