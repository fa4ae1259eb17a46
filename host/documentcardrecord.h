#pragma once

#include "host/card.h"
#include "host/export.h"

#include <QSharedPointer>
#include <QVariant>

/// A card on a receipt: the number as entered or corrected, and the card itself.
class HOST_EXPORT DocumentCardRecord
{
public:
    explicit DocumentCardRecord(QVariant number = {})
        : number(std::move(number))
    {}

    QVariant getNumber() const { return number; }
    void setNumber(const QVariant &newNumber) { number = newNumber; }
    /// Never null.
    QSharedPointer<Card> getCard() const { return card; }

private:
    QVariant number;
    QSharedPointer<Card> card = QSharedPointer<Card>::create();
};
