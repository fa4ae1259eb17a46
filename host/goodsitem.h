#pragma once

#include "host/export.h"
#include "host/formattersource.h"

#include <QString>

/// A position of a receipt. Masks know it as the source "position"; its fields are the members.
class HOST_EXPORT GoodsItem : public FormatterSource
{
public:
    /// A position without discounts: its sum is price times quantity.
    GoodsItem(int posnum, QString code, QString name, double price, double quantity);

    /// The position's number on its receipt, from 1; it stays the same when other positions are
    /// removed.
    int getPosnum() const { return posnum; }
    /// The product's code in the shop's list; the default product identifier.
    QString getCode() const { return code; }
    /// The name on the receipt; may be empty.
    QString getName() const { return name; }
    /// Price of one unit, in the receipt's currency.
    double getPrice() const { return price; }
    /// In the product's unit: pieces, kilograms.
    double getQuantity() const { return quantity; }
    /// Leaves the sum alone; `AbstractDocument::changeQuantity` adjusts it.
    void setQuantity(double newQuantity) { quantity = newQuantity; }
    /// The position's sum after its discounts, in the receipt's currency.
    double getSumb() const { return sumb; }
    /// Neither rounds nor checks; `AbstractDocument::addImpactDetail` adds a discount.
    void setSumb(double sum) { sumb = sum; }
    /// Price times quantity, rounded to hundredths.
    double sumBeforeDiscounts() const;

    QLatin1String sourceName() const override;
    QVariant field(QStringView name) const override { return memberOf(*this, name); }

    /// Calls `visit(name, member)` for each member. The names never change: shops use them in
    /// masks, and saved receipts contain them.
    template<typename Item, typename Visit>
    static void visitMembers(Item &item, const Visit &visit)
    {
        using namespace Qt::StringLiterals;
        visit("code"_L1, item.code);
        visit("name"_L1, item.name);
        visit("posnum"_L1, item.posnum);
        visit("price"_L1, item.price);
        visit("quantity"_L1, item.quantity);
        visit("sumb"_L1, item.sumb);
    }

private:
    int posnum;
    QString code;
    QString name;
    double price;
    double quantity;
    double sumb;
};
