#pragma once

#include <QDateTime>
#include <QString>

namespace till {

/// A sum of money in the language's notation, with two decimals.
QString moneyLabel(double sum);
/// A quantity in the language's notation, with no more decimals than it needs.
QString quantityLabel(double quantity);
/// A Russian phone number in groups; any other text unchanged.
QString phoneLabel(const QString &phone);

/// The format of dates, shown and typed, in every language.
constexpr QStringView dateFormat = u"dd.MM.yyyy";
/// A date in that format; empty for an invalid date.
QString dateLabel(const QDate &date);
/// A local time, with the day unless it is today's. Omits the year.
QString timeLabel(const QDateTime &moment);

/// A service's or a file's text as one line. Control characters and line breaks become "?", so that
/// nobody takes the text for the till's own.
QString oneLine(QString text);

} // namespace till
