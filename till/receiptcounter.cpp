#include "till/receiptcounter.h"

#include <host/privatefile.h>

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <utility>

namespace till {

namespace {

constexpr auto shiftKey = QLatin1String("shift");
constexpr auto numberKey = QLatin1String("number");

} // namespace

ReceiptCounter::ReceiptCounter(QString file)
    : file(std::move(file))
{}

std::optional<QString> ReceiptCounter::load()
{
    QFile source(file);
    if (!source.exists())
        return std::nullopt;
    if (!source.open(QIODevice::ReadOnly))
        return QStringLiteral("%1: cannot be read: %2").arg(file, source.errorString());
    constexpr qint64 enough = 1024;
    const auto content = QJsonDocument::fromJson(source.read(enough)).object();
    const auto storedShift = content.value(shiftKey).toInt(0);
    const auto storedNumber = content.value(numberKey).toInt(-1);
    if (storedShift < 1 || storedNumber < 0)
        return QStringLiteral("%1: expected the numbers \"shift\" and \"number\"").arg(file);
    shift = storedShift;
    number = storedNumber;
    return std::nullopt;
}

void ReceiptCounter::continueFrom(int lastShift, int lastNumber)
{
    isSaved = isSaved && shift >= lastShift && number >= lastNumber;
    shift = std::max(shift, lastShift);
    number = std::max(number, lastNumber);
}

int ReceiptCounter::next()
{
    isSaved = false;
    return ++number;
}

void ReceiptCounter::closeShift()
{
    isSaved = false;
    ++shift;
}

std::optional<QString> ReceiptCounter::save()
{
    if (isSaved)
        return std::nullopt;
    const QJsonObject content{{shiftKey, shift}, {numberKey, number}};
    const auto error =
        privatefile::write(file, QJsonDocument(content).toJson(QJsonDocument::Compact));
    if (error)
        return QStringLiteral("%1: cannot be written: %2").arg(file, *error);
    isSaved = true;
    return std::nullopt;
}

} // namespace till
