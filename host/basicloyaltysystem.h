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
/// A system overrides what it takes part in. The neutral answer stops no sale, finds nothing and
/// changes nothing. What deals with points, coupons and slips is there for such systems on hosts
/// that have them; the till of this project does not call it.
class HOST_EXPORT BasicLoyaltySystem : public virtual BasicPlugin, public DocumentWatcher
{
public:
    // Identification.

    /// Identifies the holder of a card of the receipt; may put another record into the reference.
    /// False, with the reason in `lastError`, when the card is not this system's or nobody was
    /// found.
    virtual bool identifyByCard(QSharedPointer<DocumentCardRecord> & /*card*/,
                                ECardNumberType /*type*/)
    {
        return false;
    }
    /// Asks the system for the state of the receipt's holder.
    virtual bool request() { return true; }

    // The receipt's end.

    /// Before the payment is closed. \return False to keep the receipt open.
    virtual bool requestCommit(const QSharedPointer<AbstractDocument> & /*document*/)
    {
        return true;
    }
    /// The receipt is paid; what the system has to report, it reports now.
    virtual bool commit(const QSharedPointer<AbstractDocument> & /*document*/) { return true; }
    /// The receipt stays open although `requestCommit` was asked.
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
    /// The discounts this system gives on the receipt at hand.
    virtual QList<QSharedPointer<DocumentImpactDetail>> getDiscountImpacts() const { return {}; }
    /// What the spent points made cheaper.
    virtual QList<QSharedPointer<DocumentImpactDetail>> getBonusImpactsForSpend() const
    {
        return {};
    }
    /// What the receipt earns, by position.
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
    /// Fills in what the system knows of the card's holder.
    virtual void fillCardOwnerInfo(const QSharedPointer<Client> & /*client*/) const {}
    /// What the receipt's card is at this system.
    virtual CardMode getCardMode() const { return CardMode::Unknown; }
    /// Texts to print behind the receipt, one slip each.
    virtual QList<loyalty::Slip> getSlips() const { return {}; }
    /// Gives the holder of one card number another. \return Whether it could.
    virtual bool cardReplace(const QString & /*oldNumber*/, const QString & /*newNumber*/)
    {
        return false;
    }
    /// How a card number counts that is entered when the receipt is already totalled.
    virtual ECardNumberType getCardNumberTypeToAddCardInSubtotal() const
    {
        return ECardNumberType::Typed;
    }
    /// Takes a card number out of an input. The neutral system finds none and says nothing.
    virtual loyalty::CardNumberAnswer getCardNumber(const loyalty::CardNumberInputData & /*input*/)
    {
        return {};
    }

    // Moments of the receipt. False, where it can be answered, keeps the till from going on.

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

    /// The card record of the receipt at hand; null when there is none.
    virtual QSharedPointer<DocumentCardRecord> getCard() const;
    virtual bool hasCard() const { return !getCard().isNull(); }
    /// Called by the till after `init`.
    virtual void registerLoyaltySystem() { registered = true; }
    /// From here on the till does not ask it; called before `deinit`.
    virtual void deregisterLoyaltySystem() { registered = false; }
    /// Whether the till asks this system at all.
    bool isRegistered() const { return registered; }
    /// Switches an option; none is on at first. It means something only to who asks `checkOption`.
    virtual void setOption(LoyaltySystemOption option, bool on);
    /// Under which key a receipt keeps this system's plugin data.
    virtual QString getStoreDataKey() const;
    /// Keeps a value with the receipt at hand, as `setPluginData` of the receipt does; without a
    /// receipt nothing is kept.
    virtual void setPluginData(const QString &key, const QVariant &value);
    /// Replaces all that this system keeps with the receipt at hand.
    virtual void setPluginData(const QVariantMap &data);
    /// What `setPluginData` kept under the key, also before a restart of the till, else
    /// `defaultValue`.
    virtual QVariant getPluginData(const QString &key, const QVariant &defaultValue) const;
    /// All that this system keeps with the receipt at hand; empty without one.
    virtual QVariantMap getPluginData() const;
    /// Discards what the system knows of the receipt's holder. The plugin data stays.
    virtual void clearLoyaltyData() { clearLastErrorString(); }
    /// Removes everything this system keeps with the receipt at hand.
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
