#include "till/core/receiptview.h"

namespace till {

namespace {

PositionView viewOf(const AbstractDocument &document, const GoodsItem &item)
{
    PositionView view;
    view.number = item.getPosnum();
    view.code = item.getCode();
    view.name = item.getName();
    view.price = item.getPrice();
    view.quantity = item.getQuantity();
    view.fullSum = item.sumBeforeDiscounts();
    view.sum = item.getSumb();
    for (const auto &impact : document.getImpactDetails(item.getPosnum()))
        view.discounts.append(*impact);
    return view;
}

} // namespace

ReceiptView viewOf(const AbstractDocument &document)
{
    ReceiptView view;
    view.header = document.getHeader();
    for (const auto &item : document.getGoodsItems())
        view.positions.append(viewOf(document, *item));
    view.total = document.getTotal();
    if (const auto record = document.getCardRecord()) {
        view.cardNumber = record->getNumber().toString();
        if (const auto client = record->getCard()->getClient())
            view.customer = *client;
    }
    return view;
}

PositionView positionOf(const AbstractDocument &document, int number)
{
    const auto item = document.findGoodsItem(number);
    return item ? viewOf(document, *item) : PositionView();
}

} // namespace till
