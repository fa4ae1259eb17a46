#include "host/goodsitem.h"

#include "host/money.h"

#include <utility>

using namespace Qt::StringLiterals;

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
    return "position"_L1;
}
