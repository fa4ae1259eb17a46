#include "host/goodsitem.h"

#include "host/money.h"

#include <utility>

GoodsItem::GoodsItem(int posnum, QString code, QString name, double price, double quantity)
    : posnum(posnum)
    , code(std::move(code))
    , name(std::move(name))
    , price(price)
    , quantity(quantity)
    , sumb(sumBeforeDiscounts())
{}

double GoodsItem::sumBeforeDiscounts() const
{
    return roundToHundredths(price * quantity);
}

QLatin1String GoodsItem::sourceName() const
{
    return QLatin1String("position");
}

QVariant GoodsItem::field(QStringView name) const
{
    if (name == QLatin1String("code"))
        return code;
    if (name == QLatin1String("name"))
        return this->name;
    if (name == QLatin1String("price"))
        return price;
    if (name == QLatin1String("quantity"))
        return quantity;
    if (name == QLatin1String("sumb"))
        return sumb;
    if (name == QLatin1String("posnum"))
        return posnum;
    return {};
}
