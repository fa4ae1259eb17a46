#pragma once

#include "host/documentcardrecord.h"
#include "host/documentimpactdetail.h"
#include "host/export.h"
#include "host/formattersource.h"
#include "host/goodsitem.h"

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QSharedPointer>
#include <QString>
#include <QVariantMap>

/// What identifies a receipt: it is written once, when the receipt is opened.
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

    /// Calls `visit(name, member)` for each member. The names stand in the masks of shops and in
    /// the receipts that are kept, so they never change.
    template<typename Header, typename Visit>
    static void visitMembers(Header &header, const Visit &visit)
    {
        visit(QLatin1String("cashCode"), header.cashCode);
        visit(QLatin1String("dateTimeBeg"), header.dateTimeBeg);
        visit(QLatin1String("kind"), header.kind);
        visit(QLatin1String("num"), header.num);
        visit(QLatin1String("shift"), header.shift);
        visit(QLatin1String("shopCode"), header.shopCode);
    }
};

/// A receipt.
///
/// It keeps what it is told and checks little: whether a price, a quantity or a discount makes
/// sense is for the till to say. As a mask's source it is "document" with the members of its header
/// as fields, and "total".
class HOST_EXPORT AbstractDocument : public FormatterSource
{
public:
    /// A receipt without positions, card and plugin data.
    explicit AbstractDocument(DocumentHeader header);

    const DocumentHeader &getHeader() const { return header; }
    /// Kind code: `DocumentHeader::sale` or another.
    virtual int getKind() const { return header.kind; }
    /// What the customer pays: the positions' sums after discounts, rounded to hundredths.
    virtual double getTotal() const;

    /// The positions in the receipt's order.
    virtual QList<QSharedPointer<GoodsItem>> getGoodsItems() const { return items; }
    /// Adds a position behind the others, under the number after the highest one given so far, and
    /// returns it. Its sum is that of the price of one unit times the quantity.
    QSharedPointer<GoodsItem> addGoodsItem(const QString &code, const QString &name, double price,
                                           double quantity);
    /// Adds a position as it was kept, its number and sum included; the number must be free.
    void restoreGoodsItem(const QSharedPointer<GoodsItem> &item);
    /// The position of that number; null when there is none.
    QSharedPointer<GoodsItem> findGoodsItem(int posnum) const
    {
        return itemsByPosnum.value(posnum);
    }

    /// Takes a position off, and its discounts with it. Its number is not given again while the
    /// receipt is open in this process. \return Whether there was one.
    bool removeGoodsItem(int posnum);
    /// Sells another quantity of a position; its discounts stay as they are.
    /// \return False, with nothing changed, when there is no such position, when the quantity is
    /// not above 0 or when the position would cost less than its discounts.
    bool changeQuantity(int posnum, double quantity);

    /// Adds a discount to its position and lowers the position's sum by it, also below 0; for a
    /// position that the receipt does not have, nothing is done.
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
    /// Puts the card onto the receipt in place of the one there; null takes it off.
    void setCardRecord(const QSharedPointer<DocumentCardRecord> &record);

    /// Plugin data of one loyalty system, by key; empty when it keeps none here.
    QVariantMap getPluginData(const QString &system) const { return pluginData.value(system); }
    /// Replaces a system's plugin data. Texts, truth values, numbers of 32 and 64 bits, dates, JSON
    /// objects and arrays, and maps of these survive a restart; of others nothing is kept.
    void setPluginData(const QString &system, const QVariantMap &data);
    /// The plugin data of all systems, by system.
    const QHash<QString, QVariantMap> &allPluginData() const { return pluginData; }

    /// Tells the receipt that something that belongs to it, such as a card's holder, has changed.
    virtual void update() { ++revision; }
    /// How often the receipt has changed since it was made or read.
    int getRevision() const { return revision; }
    /// Counts from here, as for a receipt just read.
    void resetRevision() { revision = 0; }

    QLatin1String sourceName() const override;
    QVariant field(QStringView name) const override;

private:
    DocumentHeader header;
    QList<QSharedPointer<GoodsItem>> items;
    QHash<int, QSharedPointer<GoodsItem>> itemsByPosnum;
    QHash<int, QList<QSharedPointer<DocumentImpactDetail>>> impacts;
    QSharedPointer<DocumentCardRecord> cardRecord;
    QHash<QString, QVariantMap> pluginData;
    int lastPosnum = 0; ///< Given last, also to a position that is gone.
    int revision = 0;
};
