#include "till/window/texts.h"

#include <QLocale>
#include <QRegularExpression>

namespace till {

namespace {

QString obstacleText(const SaleEvent &event)
{
    switch (event.obstacle) {
    case Obstacle::NoReceipt:
        return WindowText::tr("No receipt is open. Scan goods to open one.");
    case Obstacle::ReceiptOpen:
        return WindowText::tr("Receipt %1 is open: close or abandon it first.").arg(event.number);
    case Obstacle::NoSuchPosition:
        return WindowText::tr("There is no position %1 on the receipt.").arg(event.position.number);
    case Obstacle::NoPositions:
        return WindowText::tr("The receipt is empty. Scan goods, or abandon it.");
    case Obstacle::SumTooLarge:
        return WindowText::tr("A receipt must not come to more than %1. Close this one and sell "
                              "the rest on another.")
            .arg(moneyLabel(event.sum));
    case Obstacle::DiscountTooLarge:
        return WindowText::tr("The position costs only %1: enter a smaller discount.")
            .arg(moneyLabel(event.sum));
    case Obstacle::DiscountsTooLarge:
        return WindowText::tr("So few would cost less than their discount. Remove the position "
                              "and sell it anew.");
    case Obstacle::NumberNotTaken:
        return event.text.isEmpty() ? WindowText::tr("This number is not taken. Check it.")
                                    : event.text;
    case Obstacle::LoyaltySystem:
        return event.text.isEmpty() ? WindowText::tr("The loyalty system does not allow this now.")
                                    : event.text;
    case Obstacle::UnknownReceipt:
        return event.text.isEmpty()
                   ? WindowText::tr("There is no closed receipt %1.").arg(event.number)
                   : event.text;
    }
    return {};
}

QString actionText(EContext::Result outcome)
{
    switch (outcome) {
    case EContext::Result::Done:
        return WindowText::tr("The customer's data was changed.");
    case EContext::Result::Failed:
        return WindowText::tr("The customer's data was not changed.");
    case EContext::Result::Skipped:
        return WindowText::tr("Nothing was changed.");
    case EContext::Result::Unhandled:
        return WindowText::tr("This loyalty system cannot change the customer's data.");
    }
    return {};
}

/// What waits for its delivery is usual, and counted by the state line.
QString reportText(const SaleEvent &event)
{
    if (event.report == Report::Refused)
        return WindowText::tr("The service did not take the order of receipt %1. The line below "
                              "shows why.")
            .arg(event.number);
    return event.kind == SaleEvent::Kind::ReportedAgain
               ? WindowText::tr("The order of receipt %1 is on its way.").arg(event.number)
               : QString();
}

/// What the store has done with a receipt.
QString storeText(const SaleEvent &event)
{
    using Kind = SaleEvent::Kind;
    switch (event.kind) {
    case Kind::NotStored:
        return WindowText::tr("What was done is not on the disk. Sell on, but do not switch the "
                              "till off; call the one who looks after it.");
    case Kind::StoredLate:
        return WindowText::tr("Receipt %1 is on the disk now.").arg(event.number);
    case Kind::StillToReport:
        return WindowText::tr("%n receipt(s) of before are still to be reported; that happens by "
                              "itself.",
                              nullptr, event.number);
    case Kind::ReceiptUnreadable:
        return WindowText::tr("A stored receipt cannot be read. Call the one who looks after the "
                              "till.");
    default:
        return {};
    }
}

} // namespace

QString moneyLabel(double sum)
{
    return QLocale().toString(sum, 'f', 2);
}

QString quantityLabel(double quantity)
{
    return QLocale().toString(quantity, 'f', QLocale::FloatingPointShortest);
}

QString phoneLabel(const QString &phone)
{
    static const QRegularExpression parts(
        QStringLiteral("^\\+?7(\\d{3})(\\d{3})(\\d{2})(\\d{2})$"));
    return QString(phone).replace(parts, QStringLiteral("+7 \\1 \\2-\\3-\\4"));
}

QString dateLabel(const QDate &date)
{
    return QLocale().toString(date, QLocale::ShortFormat);
}

QString timeLabel(const QDateTime &moment)
{
    const auto local = moment.toLocalTime();
    const QLocale locale;
    auto format = locale.timeFormat(QLocale::ShortFormat);
    if (local.date() != QDate::currentDate()) {
        static const QRegularExpression year(QStringLiteral("\\W?y+"));
        format.prepend(locale.dateFormat(QLocale::ShortFormat).remove(year) + u' ');
    }
    return locale.toString(local, format);
}

QString eventText(const SaleEvent &event)
{
    using Kind = SaleEvent::Kind;
    switch (event.kind) {
    case Kind::Refused:
        return obstacleText(event);
    case Kind::Reopened:
        return WindowText::tr("Receipt %1 is open again, as it was left.").arg(event.number);
    case Kind::PositionRemoved:
        return WindowText::tr("Removed: %1").arg(event.position.name);
    case Kind::NotIdentified:
        return WindowText::tr("No customer on the receipt. %1").arg(event.text).trimmed();
    case Kind::LoyaltyCleared:
        return WindowText::tr("The customer is off the receipt.");
    case Kind::ActionEnded:
        return actionText(event.action);
    case Kind::Committed:
        return WindowText::tr("Receipt %1 is closed: %2. %3")
            .arg(event.number)
            .arg(moneyLabel(event.sum), reportText(event))
            .trimmed();
    case Kind::ReportedAgain:
        return reportText(event);
    case Kind::Cancelled:
        return WindowText::tr("Receipt %1 is abandoned.").arg(event.number);
    case Kind::ShiftClosed:
        return WindowText::tr("Shift %1 is closed, the next one has begun.").arg(event.number);
    case Kind::NotStored:
    case Kind::StoredLate:
    case Kind::StillToReport:
    case Kind::ReceiptUnreadable:
        return storeText(event);
    case Kind::Opened:
    case Kind::PositionAdded:
    case Kind::PositionChanged:
    case Kind::Discounted:
    case Kind::Identified:
        break;
    }
    return {};
}

bool isProblem(const SaleEvent &event)
{
    using Kind = SaleEvent::Kind;
    return event.kind == Kind::Refused || event.kind == Kind::NotStored ||
           event.kind == Kind::NotIdentified || event.kind == Kind::ReceiptUnreadable ||
           event.report == Report::Refused ||
           (event.kind == Kind::ActionEnded && event.action == EContext::Result::Failed);
}

QString badLineText(const GoodsFile::BadLine &bad)
{
    using Problem = GoodsFile::Problem;
    switch (bad.problem) {
    case Problem::Unreadable:
        return WindowText::tr("The file cannot be read.");
    case Problem::NoHead:
        return WindowText::tr("Line 1: it must name the columns code, name and price; \"%1\" is "
                              "missing.")
            .arg(bad.text);
    case Problem::NotText:
        return WindowText::tr("Line %1: not UTF-8, or a quotation mark is missing.").arg(bad.line);
    case Problem::NoCode:
        return WindowText::tr("Line %1: no code.").arg(bad.line);
    case Problem::NoName:
        return WindowText::tr("Line %1: no name.").arg(bad.line);
    case Problem::BadPrice:
        return WindowText::tr("Line %1: \"%2\" is no price.").arg(bad.line).arg(bad.text);
    case Problem::CodeTwice:
        return WindowText::tr("Line %1: the code %2 is there already.").arg(bad.line).arg(bad.text);
    }
    return {};
}

} // namespace till
