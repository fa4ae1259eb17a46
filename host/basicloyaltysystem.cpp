#include "host/basicloyaltysystem.h"

#include "host/abstractdocument.h"

using namespace Qt::StringLiterals;

QSharedPointer<DocumentCardRecord> BasicLoyaltySystem::getCard() const
{
    return currentDocument ? currentDocument->getCardRecord() : nullptr;
}

void BasicLoyaltySystem::setOption(LoyaltySystemOption option, bool on)
{
    if (on)
        options.insert(option);
    else
        options.remove(option);
}

QString BasicLoyaltySystem::getStoreDataKey() const
{
    return u"loyaltySystem%1"_s.arg(systemType);
}

void BasicLoyaltySystem::setPluginData(const QString &key, const QVariant &value)
{
    auto data = getPluginData();
    data.insert(key, value);
    setPluginData(data);
}

void BasicLoyaltySystem::setPluginData(const QVariantMap &data)
{
    if (currentDocument)
        currentDocument->setPluginData(getStoreDataKey(), data);
}

QVariant BasicLoyaltySystem::getPluginData(const QString &key, const QVariant &defaultValue) const
{
    return getPluginData().value(key, defaultValue);
}

QVariantMap BasicLoyaltySystem::getPluginData() const
{
    return currentDocument ? currentDocument->getPluginData(getStoreDataKey()) : QVariantMap();
}
