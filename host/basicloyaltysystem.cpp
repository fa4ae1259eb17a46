#include "host/basicloyaltysystem.h"

#include "host/abstractdocument.h"

BasicLoyaltySystem::~BasicLoyaltySystem() = default;

bool BasicLoyaltySystem::identifyByCard(QSharedPointer<DocumentCardRecord> & /*card*/,
                                        ECardNumberType /*type*/)
{
    return false;
}

bool BasicLoyaltySystem::request()
{
    return true;
}

bool BasicLoyaltySystem::requestCommit(const QSharedPointer<AbstractDocument> & /*document*/)
{
    return true;
}

bool BasicLoyaltySystem::commit(const QSharedPointer<AbstractDocument> & /*document*/)
{
    return true;
}

bool BasicLoyaltySystem::rollback(const QSharedPointer<AbstractDocument> & /*document*/)
{
    return true;
}

bool BasicLoyaltySystem::cancel(const QSharedPointer<AbstractDocument> & /*document*/)
{
    return true;
}

bool BasicLoyaltySystem::spendPoints(double points)
{
    return points == 0;
}

void BasicLoyaltySystem::recalculatePointsForEarn() {}

void BasicLoyaltySystem::calculatePointsForEarnByQualifier(int /*qualifier*/) {}

void BasicLoyaltySystem::removeEarnByValutCode(int /*valutCode*/) {}

void BasicLoyaltySystem::removeEarnAfterClose() {}

void BasicLoyaltySystem::recalculateAllPoints()
{
    recalculatePointsForEarn();
    recalculatePointsForSpend();
}

bool BasicLoyaltySystem::hasPointsForSpend() const
{
    return getPointsForSpend() > 0;
}

double BasicLoyaltySystem::getPointsForSpend() const
{
    return 0;
}

bool BasicLoyaltySystem::hasPointsForEarn() const
{
    return getPointsForEarn() > 0;
}

double BasicLoyaltySystem::getPointsForEarn() const
{
    return 0;
}

bool BasicLoyaltySystem::hasBonusImpacts() const
{
    return !getBonusImpactsForSpend().isEmpty();
}

QList<QSharedPointer<DocumentImpactDetail>> BasicLoyaltySystem::getDiscountImpacts() const
{
    return {};
}

QList<QSharedPointer<DocumentImpactDetail>> BasicLoyaltySystem::getBonusImpactsForSpend() const
{
    return {};
}

QList<loyalty::BonusRecord> BasicLoyaltySystem::getBonusRecords() const
{
    return {};
}

QStringList BasicLoyaltySystem::getMessagesToCashier() const
{
    return {};
}

QStringList BasicLoyaltySystem::getMessagesToClient() const
{
    return {};
}

QStringList BasicLoyaltySystem::getMessagesToClientDisplay() const
{
    return {};
}

QString BasicLoyaltySystem::getLastErrorString() const
{
    return lastError.toString();
}

void BasicLoyaltySystem::clearLastErrorString()
{
    lastError = {};
}

void BasicLoyaltySystem::takeForCustomer() {}

QString BasicLoyaltySystem::getCardInfo() const
{
    return {};
}

bool BasicLoyaltySystem::isAllowPartialPointsSpend() const
{
    return false;
}

void BasicLoyaltySystem::setPointsForSpend(double /*points*/) {}

int BasicLoyaltySystem::getRoundPrecisionForSpend() const
{
    return roundPrecisionForSpend;
}

void BasicLoyaltySystem::setRoundPrecisionForSpend(int digits)
{
    roundPrecisionForSpend = digits;
}

bool BasicLoyaltySystem::isAllowInternalDiscount() const
{
    return true;
}

bool BasicLoyaltySystem::useDiscOnChangeWithBonusPayment() const
{
    return false;
}

void BasicLoyaltySystem::fillCardOwnerInfo(const QSharedPointer<Client> & /*client*/) const {}

CardMode BasicLoyaltySystem::getCardMode() const
{
    return CardMode::Unknown;
}

QList<loyalty::Slip> BasicLoyaltySystem::getSlips() const
{
    return {};
}

bool BasicLoyaltySystem::cardReplace(const QString & /*oldNumber*/, const QString & /*newNumber*/)
{
    return false;
}

ECardNumberType BasicLoyaltySystem::getCardNumberTypeToAddCardInSubtotal() const
{
    return ECardNumberType::Typed;
}

loyalty::CardNumberAnswer
BasicLoyaltySystem::getCardNumber(const loyalty::CardNumberInputData & /*input*/)
{
    return {};
}

bool BasicLoyaltySystem::checkOption(LoyaltySystemOption option) const
{
    return options.contains(option);
}

double BasicLoyaltySystem::requestInputPointsForSpendByLoyalty()
{
    return 0;
}

bool BasicLoyaltySystem::registerCheck()
{
    return true;
}

bool BasicLoyaltySystem::couponBelongsToSystem(const QString & /*coupon*/) const
{
    return false;
}

void BasicLoyaltySystem::clearAfterClose() {}

bool BasicLoyaltySystem::payCheck()
{
    return true;
}

void BasicLoyaltySystem::recalculatePointsForSpend() {}

bool BasicLoyaltySystem::beforePutoutCheck()
{
    return true;
}

bool BasicLoyaltySystem::afterPutoutCheck()
{
    return true;
}

bool BasicLoyaltySystem::revealCheck()
{
    return true;
}

bool BasicLoyaltySystem::init()
{
    return BasicPlugin::init();
}

void BasicLoyaltySystem::deinit()
{
    BasicPlugin::deinit();
}

void BasicLoyaltySystem::distributeBonusRecord(const loyalty::BonusRecord & /*record*/) {}

QList<loyalty::BonusRecord> BasicLoyaltySystem::getBonusImpactsLimits() const
{
    return {};
}

bool BasicLoyaltySystem::restoreLoyaltySystem()
{
    return true;
}
