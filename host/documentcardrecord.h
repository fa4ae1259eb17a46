#pragma once

#include "host/card.h"
#include "host/export.h"

#include <QSharedPointer>
#include <QVariant>

/// A card on a receipt: the number as entered or corrected, and the card itself.
class HOST_EXPORT DocumentCardRecord
{
public:
    /// A card with its number and no holder.
    explicit DocumentCardRecord(QVariant number = {})
        : number(std::move(number))
    {}

    /// A text, or the host's own type of card number; invalid for none.
    QVariant getNumber() const { return number; }
    void setNumber(const QVariant &newNumber) { number = newNumber; }
    /// Never null.
    QSharedPointer<Card> getCard() const { return card; }

private:
    QVariant number;
    QSharedPointer<Card> card = QSharedPointer<Card>::create();
};
