#pragma once

#include "host/documentcardrecord.h"
#include "host/documentimpactdetail.h"
#include "host/export.h"
#include "host/formattersource.h"
#include "host/goodsitem.h"

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QSet>
#include <QSharedPointer>
#include <QString>
#include <QVariantMap>

#include <utility>

/// The identity of a receipt, set once when the receipt is opened.
struct DocumentHeader
{
    static constexpr int sale = 1;
    static constexpr int returned = 2;

    int kind = sale;
    int shopCode = 0;
    int cashCode = 0; ///< The register's number in its shop.
    int shift = 0;
    int num = 0;           ///< The receipt's number at its register.
    QDateTime dateTimeBeg; ///< Local time at which the receipt was begun, whole seconds.

    bool operator==(const DocumentHeader &other) const = default;

    /// Calls `visit(name, member)` for each member. The names never change: shops use them in
    /// masks, and saved receipts contain them.
    template<typename Header, typename Visit>
    static void visitMembers(Header &header, const Visit &visit)
    {
        using namespace Qt::StringLiterals;
        visit("cashCode"_L1, header.cashCode);
        visit("dateTimeBeg"_L1, header.dateTimeBeg);
        visit("kind"_L1, header.kind);
        visit("num"_L1, header.num);
        visit("shift"_L1, header.shift);
        visit("shopCode"_L1, header.shopCode);
    }
};

/// A receipt.
///
/// It checks little: the till decides whether a price, a quantity or a discount makes sense. Masks
/// know it as the source "document"; its fields are the members of the header, and "total".
class HOST_EXPORT AbstractDocument : public FormatterSource
{
public:
    /// A receipt without positions, card and plugin data.
    explicit AbstractDocument(DocumentHeader header);

    const DocumentHeader &getHeader() const { return header; }
    /// Kind code: `DocumentHeader::sale` or another.
    virtual int getKind() const { return header.kind; }
    /// The amount to pay: the positions' sums after discounts, rounded to hundredths.
    virtual double getTotal() const;

    /// The positions in the receipt's order.
    virtual QList<QSharedPointer<GoodsItem>> getGoodsItems() const { return items; }
    /// Adds a position at the end and returns it. Its number is one above the highest given so far,
    /// its sum is the unit price times the quantity.
    QSharedPointer<GoodsItem> addGoodsItem(const QString &code, const QString &name, double price,
                                           double quantity);
    /// Adds a saved position with its number and sum; the number must be free.
    void restoreGoodsItem(const QSharedPointer<GoodsItem> &item);
    /// The position with that number; null when there is none.
    QSharedPointer<GoodsItem> findGoodsItem(int posnum) const
    {
        return itemsByPosnum.value(posnum);
    }

    /// Removes a position and its discounts. Its number is not used again while the receipt is open
    /// in this process. \return Whether the position existed.
    bool removeGoodsItem(int posnum);
    /// Changes the quantity of a position; its discounts stay.
    /// \return False, and nothing changes, when the position does not exist, the quantity is not
    /// above 0, or the discounts would exceed the new price.
    bool changeQuantity(int posnum, double quantity);

    /// Adds a discount to its position and lowers the position's sum by it, even below 0. Does
    /// nothing when the receipt has no such position.
    void addImpactDetail(const DocumentImpactDetail &detail);
    /// Adds a discount whose effect is already in the position's sum.
    void restoreImpactDetail(const DocumentImpactDetail &detail);
    /// The discounts on a position, in the order given; found in constant time.
    QList<QSharedPointer<DocumentImpactDetail>> getImpactDetails(int posnum) const
    {
        return impacts.value(posnum);
    }

    /// The card on the receipt; null when there is none.
    QSharedPointer<DocumentCardRecord> getCardRecord() const { return cardRecord; }
    /// Replaces the card on the receipt; null removes it.
    void setCardRecord(const QSharedPointer<DocumentCardRecord> &record);

    /// The plugin data of one loyalty system, by key; empty when it has none.
    QVariantMap getPluginData(const QString &system) const { return pluginData.value(system); }
    /// Replaces a system's plugin data. The receipt is saved as JSON, so after a restart a map is a
    /// JSON object and a date is its ISO text; a value that JSON cannot hold becomes null.
    void setPluginData(const QString &system, const QVariantMap &data);
    /// The plugin data of all systems, by system.
    const QHash<QString, QVariantMap> &allPluginData() const { return pluginData; }

    /// Marks the receipt as changed after something that belongs to it has changed, such as a
    /// card's holder.
    virtual void update() { ++revision; }
    /// How often the receipt has changed since it was created.
    int getRevision() const { return revision; }
    /// The numbers of the positions that were added, changed or removed since the last call.
    QSet<int> takeChangedPositions() { return std::exchange(changedPositions, {}); }

    QLatin1String sourceName() const override;
    QVariant field(QStringView name) const override;

private:
    void noteChange(int posnum);

    DocumentHeader header;
    QList<QSharedPointer<GoodsItem>> items;
    QHash<int, QSharedPointer<GoodsItem>> itemsByPosnum;
    QHash<int, QList<QSharedPointer<DocumentImpactDetail>>> impacts;
    QSharedPointer<DocumentCardRecord> cardRecord;
    QHash<QString, QVariantMap> pluginData;
    int lastPosnum = 0; ///< The highest number given, also to a removed position.
    int revision = 0;
    QSet<int> changedPositions;
};
