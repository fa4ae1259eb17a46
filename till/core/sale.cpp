#include "till/core/sale.h"

#include "till/core/toldtexts.h"

#include <host/abstractdocument.h>
#include <host/basicloyaltysystem.h>
#include <host/session.h>

#include <utility>

namespace till {

Sale::Sale(const SaleParts &parts)
    : parts(parts)
{
    Singleton<Session>::instance()->setReceiptKeeper(this);
}

Sale::~Sale()
{
    attach({});
    Singleton<Session>::instance()->setReceiptKeeper(nullptr);
}

void Sale::open(int kind)
{
    if (!hasNoReceipt())
        return;
    current = parts.store.open(parts.place, kind);
    attach(current.document);
    const auto number = current.document->getHeader().num;
    isUnstoredTold = !current.isStored();
    if (isUnstoredTold)
        tellUnstored(number);
    emit happened({.kind = SaleEvent::Kind::Opened, .number = number});
}

void Sale::add(const QString &code, const QString &name, double price, double quantity)
{
    const auto total = current.document ? current.document->getTotal() : 0;
    if (price * quantity + total > maximumSum) {
        refuse({.sum = maximumSum, .obstacle = Obstacle::SumTooLarge});
        return;
    }
    if (!current.document)
        open(DocumentHeader::sale);
    const auto item = current.document->addGoodsItem(code, name, price, quantity);
    save();
    tellPosition(SaleEvent::Kind::PositionAdded, item->getPosnum());
}

void Sale::changeQuantity(int position, double quantity)
{
    const auto item = findPosition(position);
    if (!item)
        return;
    const auto others = current.document->getTotal() - item->getSumb();
    if (item->getPrice() * quantity + others > maximumSum) {
        refuse({.sum = maximumSum, .obstacle = Obstacle::SumTooLarge});
        return;
    }
    if (!current.document->changeQuantity(position, quantity)) {
        refuse({.obstacle = Obstacle::DiscountsTooLarge});
        return;
    }
    save();
    tellPosition(SaleEvent::Kind::PositionChanged, position);
}

void Sale::remove(int position)
{
    if (!findPosition(position))
        return;
    const auto removed = positionOf(*current.document, position);
    current.document->removeGoodsItem(position);
    save();
    emit happened({.kind = SaleEvent::Kind::PositionRemoved, .position = removed});
}

void Sale::discount(int position, double sum, int campaign, int mode, int source)
{
    const auto item = findPosition(position);
    if (!item)
        return;
    if (sum > item->getSumb()) {
        refuse({.sum = item->getSumb(), .obstacle = Obstacle::DiscountTooLarge});
        return;
    }
    current.document->addImpactDetail({position, campaign, mode, source, sum});
    save();
    tellPosition(SaleEvent::Kind::Discounted, position, sum);
}

void Sale::enterCard(const QString &text)
{
    const auto answer = parts.system.getCardNumber({loyalty::CardNumberInputData::typed, text});
    if (!answer.success) {
        refuse({.obstacle = Obstacle::NumberNotTaken, .text = answer.message.toString()});
        return;
    }
    if (!current.document)
        open(DocumentHeader::sale);
    identify(answer.number);
}

void Sale::identify(const QString &number)
{
    // Not saved before the holder is known: a card alone must not survive a restart.
    auto record = QSharedPointer<DocumentCardRecord>::create(number);
    current.document->setCardRecord(record);
    if (parts.system.identifyByCard(record, ECardNumberType::Typed)) {
        if (record != current.document->getCardRecord())
            current.document->setCardRecord(record);
        save();
        emit happened({.kind = SaleEvent::Kind::Identified});
        return;
    }
    const auto error = parts.system.getLastErrorString();
    takeCardOff();
    save();
    emit happened({.kind = SaleEvent::Kind::NotIdentified, .text = error});
}

void Sale::trigger(int action)
{
    const auto outcome = parts.system.handle(control::Action(action));
    if (current.document)
        save();
    emit happened({.kind = SaleEvent::Kind::ActionEnded, .number = action, .action = outcome});
}

void Sale::clearLoyaltyData()
{
    takeCardOff();
    if (current.document)
        save();
    emit happened({.kind = SaleEvent::Kind::LoyaltyCleared});
}

void Sale::cancel()
{
    if (!hasReceipt())
        return;
    if (!parts.system.cancel(current.document)) {
        refuse({.obstacle = Obstacle::LoyaltySystem, .text = parts.system.getLastErrorString()});
        return;
    }
    takeCardOff();
    attach({});
    auto cancelled = std::exchange(current, {});
    isUnstoredTold = false;
    const auto number = cancelled.document->getHeader().num;
    // One that the store never heard of need not be told to it.
    if (cancelled.row != 0 && !parts.store.save(cancelled, ReceiptState::Cancelled))
        tellUnstored(number);
    emit happened({.kind = SaleEvent::Kind::Cancelled, .number = number});
}

void Sale::closeShift()
{
    if (!hasNoReceipt())
        return;
    const auto closed = parts.store.shift(parts.place);
    if (!parts.store.closeShift(parts.place))
        tellUnstored(0);
    emit happened({.kind = SaleEvent::Kind::ShiftClosed, .number = closed});
}

std::optional<ReceiptView> Sale::receipt() const
{
    return current.document ? std::optional(viewOf(*current.document)) : std::nullopt;
}

int Sale::shift()
{
    return parts.store.shift(parts.place);
}

/// The loyalty system asks for it.
bool Sale::keep(const QSharedPointer<AbstractDocument> &document)
{
    return document == current.document && save();
}

void Sale::refuse(SaleEvent details)
{
    details.kind = SaleEvent::Kind::Refused;
    emit happened(details);
}

bool Sale::hasReceipt()
{
    if (!current.document)
        refuse({.obstacle = Obstacle::NoReceipt});
    return !current.document.isNull();
}

bool Sale::hasNoReceipt()
{
    if (current.document)
        refuse({.number = current.document->getHeader().num, .obstacle = Obstacle::ReceiptOpen});
    return current.document.isNull();
}

QSharedPointer<GoodsItem> Sale::findPosition(int number)
{
    if (!hasReceipt())
        return {};
    auto item = current.document->findGoodsItem(number);
    if (!item) {
        PositionView missing;
        missing.number = number;
        refuse({.position = missing, .obstacle = Obstacle::NoSuchPosition});
    }
    return item;
}

void Sale::tellPosition(SaleEvent::Kind kind, int position, double sum)
{
    emit happened({.kind = kind, .sum = sum, .position = positionOf(*current.document, position)});
}

/// Stores the receipt at hand, and with it what could not be stored before.
bool Sale::save()
{
    const auto number = current.document->getHeader().num;
    if (!parts.store.save(current, ReceiptState::Open)) {
        isUnstoredTold = true;
        tellUnstored(number);
        return false;
    }
    if (std::exchange(isUnstoredTold, false))
        emit happened({.kind = SaleEvent::Kind::StoredLate, .number = number});
    storeCommitted();
    return true;
}

void Sale::tellUnstored(int number)
{
    emit happened(
        {.kind = SaleEvent::Kind::NotStored, .number = number, .text = parts.store.lastError()});
}

void Sale::attach(const QSharedPointer<AbstractDocument> &receipt)
{
    Singleton<Session>::instance()->setCurrentDocument(receipt);
    parts.system.setDocument(receipt);
}

void Sale::takeCardOff()
{
    parts.system.clearLoyaltyData();
    parts.system.clearData();
    if (current.document)
        current.document->setCardRecord({});
}

} // namespace till
