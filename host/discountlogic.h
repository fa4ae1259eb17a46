#pragma once

#include "host/documentimpactdetail.h"
#include "host/export.h"
#include "host/mockfactory.h"

#include <QList>
#include <QSharedPointer>

class AbstractDocument;

/// Questions about the discounts of a receipt.
class HOST_EXPORT DiscountLogic
{
public:
    DiscountLogic() = default;
    virtual ~DiscountLogic();
    Q_DISABLE_COPY_MOVE(DiscountLogic)

    /// The discounts on one position; empty for an unknown position or a null document.
    virtual QList<QSharedPointer<DocumentImpactDetail>>
    getImpactDetailsForPosition(int posnum, const QSharedPointer<AbstractDocument> &document) const;
};

extern template class HOST_EXPORT MockFactory<DiscountLogic>;
