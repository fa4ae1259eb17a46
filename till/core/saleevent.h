#pragma once

#include "till/core/receiptview.h"

#include <host/econtext.h>

#include <QMetaType>
#include <QString>

namespace till {

/// How the report of a committed receipt to the loyalty service stands.
enum class Report {
    None,     ///< Nothing to report: a return.
    Reported, ///< The service has the order and all that belongs to it.
    Queued,   ///< Something of it waits for delivery.
    Refused,  ///< The service has answered and did not take it.
};

/// Why a step of the sale was not taken. Nothing has changed then.
enum class Obstacle {
    NoReceipt,         ///< No receipt is open.
    ReceiptOpen,       ///< Another receipt is open: `SaleEvent::number`.
    NoSuchPosition,    ///< `SaleEvent::position.number`.
    NoPositions,       ///< The receipt is empty.
    SumTooLarge,       ///< The receipt's sum would be above `SaleEvent::sum`.
    DiscountTooLarge,  ///< The position costs `SaleEvent::sum` only.
    DiscountsTooLarge, ///< The changed position would cost less than its discounts.
    NumberNotTaken,    ///< The loyalty system does not take the card number; `text` may say why.
    LoyaltySystem,     ///< The loyalty system forbids it; `text` says why.
    UnknownReceipt, ///< No committed receipt `SaleEvent::number`, or `text` says why none is read.
};

/// Something that happened at the till, as a value: a face says it to a person.
///
/// Texts in it come from the loyalty system, in the cashier's language, or from the operating
/// system and the database, in words for the integrator.
struct SaleEvent
{
    enum class Kind {
        Opened,            ///< Receipt `number`.
        Reopened,          ///< Receipt `number`, found open at the start.
        PositionAdded,     ///< `position`.
        PositionChanged,   ///< `position`, its quantity.
        PositionRemoved,   ///< `position`, as it was.
        Discounted,        ///< `position`, cheaper by `sum`.
        Identified,        ///< The receipt has a card with its holder.
        NotIdentified,     ///< The receipt has no card; `text` may say why.
        LoyaltyCleared,    ///< Card and loyalty data are off the receipt.
        ActionEnded,       ///< `action`, with `number` its code.
        Committed,         ///< Receipt `number` with the total `sum`; `report`.
        ReportedAgain,     ///< Receipt `number` of before was reported; `report`.
        Cancelled,         ///< Receipt `number`.
        ShiftClosed,       ///< Shift `number`; the next one has begun.
        NotStored,         ///< Receipt `number`, 0 for none, is not in the store yet: `text`.
        StoredLate,        ///< Receipt `number`, told as not stored before, is in the store now.
        StillToReport,     ///< So many (`number`) receipts of earlier runs go with later commits.
        ReceiptUnreadable, ///< What the store holds of receipt `number` cannot be read: `text`.
        Refused,           ///< A step was not taken: `obstacle`.
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
