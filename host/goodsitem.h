#pragma once

#include "host/export.h"
#include "host/formattersource.h"

#include <QString>

/// A position of a receipt. As a mask's source it is "position" with the fields "code", "name",
/// "price", "quantity", "sumb" and "posnum".
class HOST_EXPORT GoodsItem : public FormatterSource
{
public:
    GoodsItem(int posnum, QString code, QString name, double price, double quantity);

    /// Number of the position on its receipt, from 1; it stays when other positions go.
    int getPosnum() const { return posnum; }
    QString getCode() const { return code; }
    QString getName() const { return name; }
    /// Price of one unit.
    double getPrice() const { return price; }
    double getQuantity() const { return quantity; }
    /// The sum stays as it is; see `AbstractDocument::changeQuantity`.
    void setQuantity(double newQuantity) { quantity = newQuantity; }
    /// The position's sum after its discounts, in the receipt's currency.
    double getSumb() const { return sumb; }
    void setSumb(double sum) { sumb = sum; }
    /// Price times quantity, rounded to hundredths.
    double sumBeforeDiscounts() const;

    QLatin1String sourceName() const override;
    QVariant field(QStringView name) const override;

private:
    int posnum;
    QString code;
    QString name;
    double price;
    double quantity;
    double sumb;
};
