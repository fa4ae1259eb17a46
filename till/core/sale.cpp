#include "till/core/sale.h"

#include <host/abstractdocument.h>
#include <host/basicloyaltysystem.h>
#include <host/session.h>

#include <utility>

namespace till {

Sale::Sale(BasicLoyaltySystem &system, Store &store, const TillPlace &place)
    : system(system)
    , store(store)
    , place(place)
{
    Singleton<Session>::instance()->setReceiptKeeper(this);
    connect(&store, &Store::savedLate, this, [this](int number) {
        emit happened({.kind = SaleEvent::Kind::StoredLate, .number = number});
    });
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
    current = store.newReceipt(place, kind);
    attach(current);
    save();
    const auto number = current->getHeader().num;
    emit happened({.kind = SaleEvent::Kind::Opened, .number = number});
}

void Sale::add(const QString &code, const QString &name, double price, double quantity)
{
    const auto total = current ? current->getTotal() : 0;
    if (price * quantity + total > maximumSum) {
        refuse({.sum = maximumSum, .obstacle = Obstacle::SumTooLarge});
        return;
    }
    if (!current)
        open(DocumentHeader::sale);
    const auto item = current->addGoodsItem(code, name, price, quantity);
    save();
    tellPosition(SaleEvent::Kind::PositionAdded, item->getPosnum());
}

void Sale::changeQuantity(int position, double quantity)
{
    const auto item = findPosition(position);
    if (!item)
        return;
    const auto others = current->getTotal() - item->getSumb();
    if (item->getPrice() * quantity + others > maximumSum) {
        refuse({.sum = maximumSum, .obstacle = Obstacle::SumTooLarge});
        return;
    }
    if (!current->changeQuantity(position, quantity)) {
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
    const auto removed = positionOf(*current, position);
    current->removeGoodsItem(position);
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
    current->addImpactDetail({position, campaign, mode, source, sum});
    save();
    tellPosition(SaleEvent::Kind::Discounted, position, sum);
}

void Sale::enterCard(const QString &text)
{
    const auto answer = system.getCardNumber({loyalty::CardNumberInputData::typed, text});
    if (!answer.success) {
        refuse({.obstacle = Obstacle::NumberNotTaken, .text = answer.message.toString()});
        return;
    }
    if (!current)
        open(DocumentHeader::sale);
    identify(answer.number);
}

void Sale::identify(const QString &number)
{
    // Saved only with its holder: a card alone must not survive a restart.
    auto record = QSharedPointer<DocumentCardRecord>::create(number);
    current->setCardRecord(record);
    if (system.identifyByCard(record, ECardNumberType::Typed)) {
        if (record != current->getCardRecord())
            current->setCardRecord(record);
        save();
        emit happened({.kind = SaleEvent::Kind::Identified});
        return;
    }
    const auto error = system.getLastErrorString();
    takeCardOff();
    save();
    emit happened({.kind = SaleEvent::Kind::NotIdentified, .text = error});
}

void Sale::trigger(int action)
{
    const auto outcome = system.handle(control::Action(action));
    if (current)
        save();
    emit happened({.kind = SaleEvent::Kind::ActionEnded, .number = action, .action = outcome});
}

void Sale::clearLoyaltyData()
{
    takeCardOff();
    if (current)
        save();
    emit happened({.kind = SaleEvent::Kind::LoyaltyCleared});
}

void Sale::cancel()
{
    if (!hasReceipt())
        return;
    if (!system.cancel(current)) {
        refuse({.obstacle = Obstacle::LoyaltySystem, .text = system.getLastErrorString()});
        return;
    }
    takeCardOff();
    attach({});
    const auto cancelled = std::exchange(current, {});
    const auto number = cancelled->getHeader().num;
    tellSaved(store.save(cancelled, ReceiptState::Cancelled), number);
    emit happened({.kind = SaleEvent::Kind::Cancelled, .number = number});
}

void Sale::closeShift()
{
    if (!hasNoReceipt())
        return;
    const auto closed = store.shift(place);
    tellSaved(store.closeShift(place), 0);
    emit happened({.kind = SaleEvent::Kind::ShiftClosed, .number = closed});
}

std::optional<ReceiptView> Sale::receipt() const
{
    return current ? std::optional(viewOf(*current)) : std::nullopt;
}

int Sale::shift()
{
    return store.shift(place);
}

/// Called by the loyalty system.
bool Sale::keep(const QSharedPointer<AbstractDocument> &document)
{
    return document == current && save();
}

void Sale::refuse(SaleEvent details)
{
    details.kind = SaleEvent::Kind::Refused;
    emit happened(details);
}

bool Sale::hasReceipt()
{
    if (!current)
        refuse({.obstacle = Obstacle::NoReceipt});
    return !current.isNull();
}

bool Sale::hasNoReceipt()
{
    if (current)
        refuse({.number = current->getHeader().num, .obstacle = Obstacle::ReceiptOpen});
    return current.isNull();
}

QSharedPointer<GoodsItem> Sale::findPosition(int number)
{
    if (!hasReceipt())
        return {};
    auto item = current->findGoodsItem(number);
    if (!item) {
        PositionView missing;
        missing.number = number;
        refuse({.position = missing, .obstacle = Obstacle::NoSuchPosition});
    }
    return item;
}

void Sale::tellPosition(SaleEvent::Kind kind, int position, double sum)
{
    emit happened({.kind = kind, .sum = sum, .position = positionOf(*current, position)});
}

bool Sale::save()
{
    return tellSaved(store.save(current, ReceiptState::Open), current->getHeader().num);
}

bool Sale::tellSaved(const Store::Saved &saved, int number)
{
    if (!saved)
        emit happened(
            {.kind = SaleEvent::Kind::NotStored, .number = number, .text = saved.error()});
    return saved.has_value();
}

void Sale::attach(const QSharedPointer<AbstractDocument> &receipt)
{
    Singleton<Session>::instance()->setCurrentDocument(receipt);
    system.setDocument(receipt);
}

void Sale::takeCardOff()
{
    system.clearLoyaltyData();
    system.clearData();
    if (current)
        current->setCardRecord({});
}

} // namespace till
