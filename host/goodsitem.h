#pragma once

#include "host/export.h"
#include "host/formattersource.h"

#include <QString>

/// A position of a receipt. As a mask's source it is "position" with its members as fields.
class HOST_EXPORT GoodsItem : public FormatterSource
{
public:
    /// A position with the sum of its price and quantity, without discounts.
    GoodsItem(int posnum, QString code, QString name, double price, double quantity);

    /// Number of the position on its receipt, from 1; it stays when other positions go.
    int getPosnum() const { return posnum; }
    /// The goods' code in the shop's list; what the default product identifier consists of.
    QString getCode() const { return code; }
    /// What the receipt calls it; may be empty.
    QString getName() const { return name; }
    /// Price of one unit, in the receipt's currency.
    double getPrice() const { return price; }
    /// In the goods' own unit: pieces, kilograms.
    double getQuantity() const { return quantity; }
    /// The sum stays as it is; see `AbstractDocument::changeQuantity`.
    void setQuantity(double newQuantity) { quantity = newQuantity; }
    /// The position's sum after its discounts, in the receipt's currency.
    double getSumb() const { return sumb; }
    /// Rounded and checked by nobody; for discounts see `AbstractDocument::addImpactDetail`.
    void setSumb(double sum) { sumb = sum; }
    /// Price times quantity, rounded to hundredths.
    double sumBeforeDiscounts() const;

    QLatin1String sourceName() const override;
    QVariant field(QStringView name) const override { return memberOf(*this, name); }

    /// Calls `visit(name, member)` for each member. The names stand in the masks of shops and in
    /// the receipts that are kept, so they never change.
    template<typename Item, typename Visit>
    static void visitMembers(Item &item, const Visit &visit)
    {
        visit(QLatin1String("code"), item.code);
        visit(QLatin1String("name"), item.name);
        visit(QLatin1String("posnum"), item.posnum);
        visit(QLatin1String("price"), item.price);
        visit(QLatin1String("quantity"), item.quantity);
        visit(QLatin1String("sumb"), item.sumb);
    }

private:
    int posnum;
    QString code;
    QString name;
    double price;
    double quantity;
    double sumb;
};
