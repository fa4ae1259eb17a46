#include "till/words/saletext.h"

#include "till/words/figures.h"

#include <algorithm>
#include <array>
#include <utility>

namespace till {

namespace {

using namespace Qt::StringLiterals;
using enum SaleEvent::Kind;
using enum Obstacle;

// The texts. In them %1 is the event's number, %2 its sum, %3 the position's number, %4 the count
// of the receipt's positions and %5 the number after the event's.

constexpr std::array obstacles{
    std::pair{NoReceipt, QT_TRANSLATE_NOOP("SaleText", "No receipt is open.")},
    std::pair{ReceiptOpen,
              QT_TRANSLATE_NOOP("SaleText", "Receipt %1 is open: close or cancel it first.")},
    std::pair{NoSuchPosition, QT_TRANSLATE_NOOP("SaleText", "There is no position %3.")},
    std::pair{NoPositions,
              QT_TRANSLATE_NOOP("SaleText", "The receipt is empty. Sell something, or cancel it.")},
    std::pair{SumTooLarge,
              QT_TRANSLATE_NOOP("SaleText", "A receipt cannot exceed %2. Close this receipt and "
                                            "sell the rest on another one.")},
    std::pair{DiscountTooLarge,
              QT_TRANSLATE_NOOP("SaleText", "The discount is larger than the position's sum, %2.")},
    std::pair{DiscountsTooLarge,
              QT_TRANSLATE_NOOP("SaleText", "The discount would be larger than the sum. Remove "
                                            "the position and sell it again.")},
    std::pair{NumberNotTaken,
              QT_TRANSLATE_NOOP("SaleText", "This number is not accepted. Check it.")},
    std::pair{LoyaltySystem,
              QT_TRANSLATE_NOOP("SaleText", "The loyalty system does not allow this now.")},
    std::pair{UnknownReceipt, QT_TRANSLATE_NOOP("SaleText", "There is no closed receipt %1.")},
};

constexpr std::array actions{
    std::pair{EContext::Result::Done,
              QT_TRANSLATE_NOOP("SaleText", "Done: the customer's data is changed.")},
    std::pair{EContext::Result::Failed,
              QT_TRANSLATE_NOOP("SaleText", "Failed: the customer's data is not changed.")},
    std::pair{EContext::Result::Skipped, QT_TRANSLATE_NOOP("SaleText", "Nothing was changed.")},
    std::pair{EContext::Result::Unhandled,
              QT_TRANSLATE_NOOP("SaleText", "The till has no action %1.")},
};

constexpr std::array events{
    std::pair{Opened, QT_TRANSLATE_NOOP("SaleText", "Receipt %1 is open.")},
    std::pair{Reopened,
              QT_TRANSLATE_NOOP("SaleText", "Receipt %1 is open again: %4 positions, total %2.")},
    std::pair{OpenToo,
              QT_TRANSLATE_NOOP("SaleText", "Receipt %1 is open, too. Close this receipt and "
                                            "restart the till to open it.")},
    std::pair{NotIdentified, QT_TRANSLATE_NOOP("SaleText", "There is no customer on the receipt.")},
    std::pair{LoyaltyCleared,
              QT_TRANSLATE_NOOP("SaleText", "The customer is removed from the receipt.")},
    std::pair{Committed, QT_TRANSLATE_NOOP("SaleText", "Receipt %1 is closed: %2.")},
    std::pair{ReportedAgain, QT_TRANSLATE_NOOP("SaleText", "Receipt %1 is reported.")},
    std::pair{Cancelled, QT_TRANSLATE_NOOP("SaleText", "Receipt %1 is cancelled.")},
    std::pair{ShiftClosed, QT_TRANSLATE_NOOP("SaleText", "Shift %1 is closed, shift %5 begins.")},
    std::pair{StoredLate, QT_TRANSLATE_NOOP("SaleText", "Receipt %1 is on the disk now.")},
    std::pair{StillToReport,
              QT_TRANSLATE_NOOP("SaleText", "Receipts still to be reported: %1. The till reports "
                                            "them by itself.")},
    std::pair{ReceiptUnreadable,
              QT_TRANSLATE_NOOP("SaleText", "A stored receipt cannot be read. Call support.")},
};

/// The text of a table's row; empty for none.
template<typename Table, typename Key>
QString textIn(const Table &table, Key key)
{
    const auto *const row = std::ranges::find(table, key, &Table::value_type::first);
    return row == table.end() ? QString() : SaleText::tr(row->second);
}

QString positionText(const SaleEvent &event)
{
    const auto &position = event.position;
    const auto name = u"%1. %2"_s.arg(position.number).arg(oneLine(position.name));
    if (event.kind == PositionRemoved)
        return SaleText::tr("%1 is removed.").arg(name);
    if (event.kind == Discounted)
        return u"%1 -%2 = %3"_s.arg(name, moneyLabel(event.sum), moneyLabel(position.sum));
    return u"%1 %2 x %3 = %4"_s.arg(name, quantityLabel(position.quantity),
                                    moneyLabel(position.price), moneyLabel(position.sum));
}

/// The text of an event, with its places still open.
QString openText(const SaleEvent &event)
{
    const auto isRefused = event.report == Report::Refused;
    if (event.kind == SaleEvent::Kind::Refused)
        return textIn(obstacles, event.obstacle);
    if (event.kind == ActionEnded)
        return textIn(actions, event.action);
    if (event.kind == ReportedAgain && isRefused)
        return SaleText::tr("Receipt %1 is not reported: its order was refused.");
    if (event.kind == NotStored)
        return event.number > 0
                   ? SaleText::tr("Receipt %1 is only in memory. You can go on selling, but do not "
                                  "switch the till off. Call support.")
                   : SaleText::tr("The last step is not saved. You can go on selling, but do not "
                                  "switch the till off. Call support.");
    auto text = textIn(events, event.kind);
    if (event.kind == Committed && isRefused)
        return text + u' ' +
               SaleText::tr("The sale is done. The service refused its order; "
                            "support will send it again.");
    return text;
}

} // namespace

QString eventText(const SaleEvent &event, const std::optional<ReceiptView> &receipt)
{
    if (event.kind == SaleEvent::Kind::Refused && !event.text.isEmpty())
        return oneLine(event.text);
    if (event.kind == PositionAdded || event.kind == PositionChanged ||
        event.kind == PositionRemoved || event.kind == Discounted)
        return positionText(event);
    const auto text =
        openText(event)
            .replace("%1"_L1, QString::number(event.number))
            .replace("%2"_L1, moneyLabel(event.sum))
            .replace("%3"_L1, QString::number(event.position.number))
            .replace("%4"_L1, QString::number(receipt ? receipt->positions.size() : 0))
            .replace("%5"_L1, QString::number(event.number + 1));
    const auto isExplained = event.kind == NotIdentified && !event.text.isEmpty();
    return isExplained ? oneLine(event.text) + u'\n' + text : text;
}

bool isProblem(const SaleEvent &event)
{
    return event.kind == SaleEvent::Kind::Refused || event.kind == NotStored ||
           event.kind == NotIdentified || event.kind == ReceiptUnreadable ||
           event.report == Report::Refused ||
           (event.kind == ActionEnded && event.action == EContext::Result::Failed);
}

} // namespace till
