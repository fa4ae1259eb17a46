#include "till/core/receiptview.h"

#include <host/abstractdocument.h>

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
        view.discounts.append({impact->getCampaignCode(), impact->getDiscountMode(),
                               impact->getImpactSource(), impact->getDiscountSum()});
    return view;
}

CustomerView viewOf(const Client &client)
{
    CustomerView view;
    view.name = client.getName();
    view.phone = client.getPhoneNumber();
    view.email = client.getEmail();
    view.sex =
        client.getSex() == Client::Sex::Male ? CustomerView::Sex::Male : CustomerView::Sex::Female;
    view.birthday = client.getBirthday();
    view.electronicReceipts = client.hasOption(ClientOptions::ElectronicReceipt);
    return view;
}

} // namespace

ReceiptView viewOf(const AbstractDocument &document)
{
    const auto &header = document.getHeader();
    ReceiptView view;
    view.shop = header.shopCode;
    view.cash = header.cashCode;
    view.shift = header.shift;
    view.number = header.num;
    view.isReturn = header.kind != DocumentHeader::sale;
    view.begun = header.dateTimeBeg;
    for (const auto &item : document.getGoodsItems())
        view.positions.append(viewOf(document, *item));
    view.total = document.getTotal();
    if (const auto record = document.getCardRecord()) {
        view.cardNumber = record->getNumber().toString();
        if (const auto client = record->getCard()->getClient())
            view.customer = viewOf(*client);
    }
    return view;
}

PositionView positionOf(const AbstractDocument &document, int number)
{
    const auto item = document.findGoodsItem(number);
    return item ? viewOf(document, *item) : PositionView();
}

} // namespace till
