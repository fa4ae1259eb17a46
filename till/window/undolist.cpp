#include "till/window/undolist.h"

#include "till/core/sale.h"

namespace till {

void UndoList::note(const SaleEvent &event, const std::optional<PositionView> &before)
{
    switch (event.kind) {
    case SaleEvent::Kind::PositionAdded:
    case SaleEvent::Kind::PositionChanged:
    case SaleEvent::Kind::PositionRemoved:
    case SaleEvent::Kind::Discounted:
        if (!current)
            steps.append({event.kind, event.position.number, before.value_or(PositionView())});
        else if (event.kind == SaleEvent::Kind::PositionAdded)
            renumber(current->number, event.position.number);
        break;
    case SaleEvent::Kind::Opened:
    case SaleEvent::Kind::Reopened:
    case SaleEvent::Kind::Committed:
    case SaleEvent::Kind::Cancelled:
        steps.clear();
        break;
    default:
        break;
    }
}

std::optional<UndoList::Step> UndoList::begin()
{
    if (!canBegin())
        return std::nullopt;
    current = steps.takeLast();
    return current;
}

void UndoList::renumber(int from, int to)
{
    for (auto &step : steps) {
        if (step.number == from)
            step.number = to;
    }
}

void UndoList::takeBack(Sale &sale, const Step &step)
{
    const auto &before = step.before;
    if (step.kind == SaleEvent::Kind::PositionChanged) {
        sale.changeQuantity(step.number, before.quantity);
        return;
    }
    if (step.kind != SaleEvent::Kind::PositionRemoved)
        sale.remove(step.number);
    if (step.kind == SaleEvent::Kind::PositionAdded)
        return;
    sale.add(before.code, before.name, before.price, before.quantity);
    const auto receipt = sale.receipt();
    if (!receipt || receipt->positions.isEmpty())
        return;
    const auto number = receipt->positions.constLast().number;
    for (const auto &discount : before.discounts)
        sale.discount(number, discount.getDiscountSum(), discount.getCampaignCode(),
                      discount.getDiscountMode(), discount.getImpactSource());
}

} // namespace till
