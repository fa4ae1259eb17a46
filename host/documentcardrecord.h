#pragma once

#include "host/card.h"
#include "host/export.h"

#include <QSharedPointer>
#include <QVariant>

/// A card on a receipt: the number as entered or corrected, and the card itself.
class HOST_EXPORT DocumentCardRecord
{
public:
    /// A card with its number, as yet without a holder.
    explicit DocumentCardRecord(QVariant number = {})
        : number(std::move(number))
    {}

    /// A text, or whatever the host reads its cards as; invalid for none.
    QVariant getNumber() const { return number; }
    void setNumber(const QVariant &newNumber) { number = newNumber; }
    /// Never null.
    QSharedPointer<Card> getCard() const { return card; }

private:
    QVariant number;
    QSharedPointer<Card> card = QSharedPointer<Card>::create();
};
