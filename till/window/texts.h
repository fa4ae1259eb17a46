#pragma once

#include "till/core/saleevent.h"
#include "till/window/goodsfile.h"

#include <QCoreApplication>
#include <QString>

namespace till {

/// Texts of the window that belong to no class of their own.
struct WindowText
{
    Q_DECLARE_TR_FUNCTIONS(WindowText)
};

/// A sum of money as the language writes it.
QString moneyLabel(double sum);
/// A quantity, with as many decimals as it has.
QString quantityLabel(double quantity);
/// A phone number in groups; any other text as it is.
QString phoneLabel(const QString &phone);
QString dateLabel(const QDate &date);
/// A moment of the last months, without the day when it was today.
QString timeLabel(const QDateTime &moment);

/// What happened, for the cashier; empty when the screen shows it anyway.
QString eventText(const SaleEvent &event);
/// Whether the cashier must not miss the event.
bool isProblem(const SaleEvent &event);

/// What is wrong with a line of the goods file.
QString badLineText(const GoodsFile::BadLine &bad);

} // namespace till
