#include "till/console/eventtext.h"

#include "till/console/receipttext.h"
#include "till/console/texts.h"
#include "till/core/numbers.h"

namespace till {

namespace {

QString obstacleText(const SaleEvent &event)
{
    if (!event.text.isEmpty())
        return event.text;
    switch (event.obstacle) {
    case Obstacle::NoReceipt:
        return ConsoleText::tr("No receipt is open.");
    case Obstacle::ReceiptOpen:
        return ConsoleText::tr("Receipt %1 is open; commit or cancel it first.").arg(event.number);
    case Obstacle::NoSuchPosition:
        return ConsoleText::tr("There is no position %1.").arg(event.position.number);
    case Obstacle::NoPositions:
        return ConsoleText::tr("The receipt has no positions.");
    case Obstacle::SumTooLarge:
        return ConsoleText::tr("A receipt's sum must not be above %1.").arg(moneyText(event.sum));
    case Obstacle::DiscountTooLarge:
        return ConsoleText::tr("The discount is larger than the position's sum, %1.")
            .arg(moneyText(event.sum));
    case Obstacle::DiscountsTooLarge:
        return ConsoleText::tr("The position would cost less than its discounts.");
    case Obstacle::NumberNotTaken:
        return ConsoleText::tr("The loyalty system does not take this number.");
    case Obstacle::LoyaltySystem:
        return ConsoleText::tr("The loyalty system forbids it.");
    case Obstacle::UnknownReceipt:
        return ConsoleText::tr("There is no committed receipt %1.").arg(event.number);
    }
    return {};
}

QString actionText(const SaleEvent &event)
{
    switch (event.action) {
    case EContext::Result::Done:
        return ConsoleText::tr("Done.");
    case EContext::Result::Failed:
        return ConsoleText::tr("Failed.");
    case EContext::Result::Skipped:
        return ConsoleText::tr("Nothing was done.");
    case EContext::Result::Unhandled:
        return ConsoleText::tr("Nothing serves action %1.").arg(event.number);
    }
    return {};
}

QString reportText(const SaleEvent &event)
{
    const auto isRefused = event.report == Report::Refused;
    auto text = ConsoleText::tr("Receipt %1 is reported.").arg(event.number);
    if (event.kind == SaleEvent::Kind::Committed)
        text = ConsoleText::tr("Receipt %1 is committed, total %2.")
                   .arg(event.number)
                   .arg(moneyText(event.sum));
    else if (isRefused)
        text = ConsoleText::tr("Receipt %1 is not reported.").arg(event.number);
    if (isRefused)
        text += ConsoleText::tr(" The service did not take its order; \"till receipts --refused\" "
                                "says why.");
    return text;
}

QString positionText(const SaleEvent &event)
{
    const auto &position = event.position;
    if (event.kind == SaleEvent::Kind::PositionRemoved)
        return ConsoleText::tr("%1. %2 is removed.").arg(position.number).arg(position.name);
    if (event.kind == SaleEvent::Kind::Discounted)
        return QStringLiteral("%1. %2 -%3 = %4")
            .arg(position.number)
            .arg(position.name, moneyText(event.sum), moneyText(position.sum));
    return QStringLiteral("%1. %2 %3 x %4 = %5")
        .arg(position.number)
        .arg(position.name, quantityText(position.quantity), moneyText(position.price),
             moneyText(position.sum));
}

QString unstoredText(const SaleEvent &event)
{
    auto text = ConsoleText::tr("[not saved] %1").arg(event.text);
    if (event.number > 0)
        text += u'\n' + ConsoleText::tr("Receipt %1 is only in memory. Do not stop the till before "
                                        "there is room.")
                            .arg(event.number);
    return text;
}

QString unreadableText(const SaleEvent &event)
{
    return ConsoleText::tr("The receipt of row %1 in the store cannot be read: %2; it stays there.")
        .arg(event.number)
        .arg(event.text);
}

QString shiftText(int closed)
{
    return ConsoleText::tr("Shift %1 is closed, shift %2 begins.").arg(closed).arg(closed + 1);
}

QString reopenedText(const SaleEvent &event, const std::optional<ReceiptView> &receipt)
{
    return ConsoleText::tr("Receipt %1 is open again: %2 positions, total %3.")
        .arg(event.number)
        .arg(receipt ? receipt->positions.size() : 0)
        .arg(moneyText(event.sum));
}

QString notIdentifiedText(const SaleEvent &event)
{
    const auto reason =
        event.text.isEmpty() ? ConsoleText::tr("The holder cannot be identified.") : event.text;
    return reason + u'\n' + ConsoleText::tr("There is no card on the receipt.");
}

} // namespace

QString eventText(const SaleEvent &event, const std::optional<ReceiptView> &receipt)
{
    using Kind = SaleEvent::Kind;
    switch (event.kind) {
    case Kind::Opened:
        return ConsoleText::tr("Receipt %1 is open.").arg(event.number);
    case Kind::Reopened:
        return reopenedText(event, receipt);
    case Kind::PositionAdded:
    case Kind::PositionChanged:
    case Kind::PositionRemoved:
    case Kind::Discounted:
        return positionText(event);
    case Kind::Identified:
        return receipt ? holderText(*receipt) : QString();
    case Kind::NotIdentified:
        return notIdentifiedText(event);
    case Kind::LoyaltyCleared:
        return ConsoleText::tr("The loyalty data is cleared.");
    case Kind::ActionEnded:
        return actionText(event);
    case Kind::Committed:
    case Kind::ReportedAgain:
        return reportText(event);
    case Kind::Cancelled:
        return ConsoleText::tr("Receipt %1 is cancelled.").arg(event.number);
    case Kind::ShiftClosed:
        return shiftText(event.number);
    case Kind::NotStored:
        return unstoredText(event);
    case Kind::StoredLate:
        return ConsoleText::tr("Receipt %1 is on the disk now.").arg(event.number);
    case Kind::StillToReport:
        return ConsoleText::tr("Receipts still to be reported: %1; some go with each commit.")
            .arg(event.number);
    case Kind::ReceiptUnreadable:
        return unreadableText(event);
    case Kind::Refused:
        return obstacleText(event);
    }
    return {};
}

QString deliveryText(const DeliveryState &state)
{
    if (!state.error.isEmpty())
        return state.error;
    auto text = ConsoleText::tr("Messages waiting: %1, parked: %2; receipts refused: %3.")
                    .arg(state.waiting)
                    .arg(state.parked)
                    .arg(state.refused);
    if (state.oldestWaiting.isValid())
        text += u' ' + ConsoleText::tr("The oldest has waited since %1.")
                           .arg(state.oldestWaiting.toLocalTime().toString(
                               QStringLiteral("dd.MM.yyyy HH:mm:ss")));
    return text;
}

} // namespace till
