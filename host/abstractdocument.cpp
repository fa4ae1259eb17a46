#include "host/abstractdocument.h"

#include "host/money.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

using namespace Qt::StringLiterals;

AbstractDocument::AbstractDocument(DocumentHeader header)
    : header(std::move(header))
{}

double AbstractDocument::getTotal() const
{
    const auto addSum = [](double sum, const auto &item) { return sum + item->getSumb(); };
    return roundToHundredths(std::accumulate(items.cbegin(), items.cend(), 0.0, addSum));
}

QSharedPointer<GoodsItem> AbstractDocument::addGoodsItem(const QString &code, const QString &name,
                                                         double price, double quantity)
{
    auto item = QSharedPointer<GoodsItem>::create(lastPosnum + 1, code, name, price, quantity);
    restoreGoodsItem(item);
    noteChange(item->getPosnum());
    return item;
}

void AbstractDocument::restoreGoodsItem(const QSharedPointer<GoodsItem> &item)
{
    items.append(item);
    itemsByPosnum.insert(item->getPosnum(), item);
    lastPosnum = std::max(lastPosnum, item->getPosnum());
}

bool AbstractDocument::removeGoodsItem(int posnum)
{
    const auto item = itemsByPosnum.take(posnum);
    if (!item)
        return false;
    items.removeOne(item);
    impacts.remove(posnum);
    noteChange(posnum);
    return true;
}

bool AbstractDocument::changeQuantity(int posnum, double quantity)
{
    const auto item = findGoodsItem(posnum);
    if (!item || !(quantity > 0))
        return false;
    const auto addSum = [](double sum, const auto &impact) {
        return sum + impact->getDiscountSum();
    };
    const auto details = impacts.value(posnum);
    const auto discounts = std::accumulate(details.cbegin(), details.cend(), 0.0, addSum);
    const auto sum = roundToHundredths(roundToHundredths(item->getPrice() * quantity) - discounts);
    if (sum < 0 || !std::isfinite(sum))
        return false;
    item->setQuantity(quantity);
    item->setSumb(sum);
    noteChange(posnum);
    return true;
}

void AbstractDocument::addImpactDetail(const DocumentImpactDetail &detail)
{
    const auto item = findGoodsItem(detail.getPosnum());
    if (!item)
        return;
    item->setSumb(roundToHundredths(item->getSumb() - detail.getDiscountSum()));
    restoreImpactDetail(detail);
    noteChange(detail.getPosnum());
}

void AbstractDocument::restoreImpactDetail(const DocumentImpactDetail &detail)
{
    impacts[detail.getPosnum()].append(QSharedPointer<DocumentImpactDetail>::create(detail));
}

void AbstractDocument::setCardRecord(const QSharedPointer<DocumentCardRecord> &record)
{
    cardRecord = record;
    ++revision;
}

void AbstractDocument::setPluginData(const QString &system, const QVariantMap &data)
{
    pluginData.insert(system, data);
    ++revision;
}

void AbstractDocument::noteChange(int posnum)
{
    changedPositions.insert(posnum);
    ++revision;
}

QLatin1String AbstractDocument::sourceName() const
{
    return "document"_L1;
}

QVariant AbstractDocument::field(QStringView name) const
{
    return name == "total"_L1 ? getTotal() : memberOf(header, name);
}
