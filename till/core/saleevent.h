#pragma once

#include "till/core/receiptview.h"

#include <host/econtext.h>

#include <QMetaType>
#include <QString>

namespace till {

/// The state of a committed receipt's report to the loyalty service.
enum class Report {
    None,     ///< Nothing to report: a return.
    Reported, ///< The service has the order and its status.
    Queued,   ///< A message of it waits for delivery.
    Refused,  ///< The service refused it.
};

/// Why a step of the sale was refused.
enum class Obstacle {
    NoReceipt,         ///< No receipt is open.
    ReceiptOpen,       ///< Another receipt is open: `SaleEvent::number`.
    NoSuchPosition,    ///< `SaleEvent::position.number`.
    NoPositions,       ///< The receipt is empty.
    SumTooLarge,       ///< The receipt's sum would be above `SaleEvent::sum`.
    DiscountTooLarge,  ///< The position costs only `SaleEvent::sum`.
    DiscountsTooLarge, ///< The changed position would cost less than its discounts.
    NumberNotTaken,    ///< The loyalty system rejects the card number; `text` may say why.
    LoyaltySystem,     ///< The loyalty system forbids it; `text` says why.
    UnknownReceipt, ///< No committed receipt `SaleEvent::number`; `text` is a read error, if any.
};

/// An event at the till, which a face tells the cashier.
///
/// `text` comes from the loyalty system in the cashier's language, or from the operating system or
/// the database in the integrator's.
struct SaleEvent
{
    enum class Kind {
        Opened,            ///< Receipt `number`.
        Reopened,          ///< Receipt `number` of an earlier run, with the total `sum`.
        OpenToo,           ///< Receipt `number` is open as well; a later start reopens it.
        PositionAdded,     ///< `position`.
        PositionChanged,   ///< The quantity of `position`.
        PositionRemoved,   ///< `position`, as it was before.
        Discounted,        ///< `position` is cheaper by `sum`.
        Identified,        ///< The receipt has a card with a known holder.
        NotIdentified,     ///< The receipt has no card; `text` may say why.
        LoyaltyCleared,    ///< The receipt has lost its card and loyalty data.
        ActionEnded,       ///< Action number `number`, with the result `action`.
        Committed,         ///< Receipt `number` with the total `sum` and its `report`.
        ReportedAgain,     ///< Receipt `number`, committed earlier, with its new `report`.
        Cancelled,         ///< Receipt `number`.
        ShiftClosed,       ///< Shift `number`; the next shift has begun.
        NotStored,         ///< Receipt `number` is unsaved, a shift for 0; `text` says why.
        StoredLate,        ///< Receipt `number`, told as `NotStored` before, is saved now.
        StillToReport,     ///< `number` receipts of earlier runs are reported with later commits.
        ReceiptUnreadable, ///< Row `number` of the store cannot be read; `text` says why.
        Refused,           ///< A step was refused; `obstacle` says why.
    };

    Kind kind = Kind::Refused;
    int number = 0;
    double sum = 0;
    PositionView position = {};
    Report report = Report::None;
    Obstacle obstacle = Obstacle::NoReceipt;
    EContext::Result action = EContext::Result::Done;
    QString text = {};
};

} // namespace till

Q_DECLARE_METATYPE(till::SaleEvent)
