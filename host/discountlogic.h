#pragma once

#include "host/documentimpactdetail.h"
#include "host/export.h"
#include "host/hostobject.h"
#include "host/mockfactory.h"

#include <QList>
#include <QSharedPointer>

class AbstractDocument;

/// Queries on the discounts of a receipt.
class HOST_EXPORT DiscountLogic : public HostObject
{
public:
    /// The discounts on one position; empty for an unknown position or a null document.
    virtual QList<QSharedPointer<DocumentImpactDetail>>
    getImpactDetailsForPosition(int posnum, const QSharedPointer<AbstractDocument> &document) const;
};

extern template class HOST_EXPORT MockFactory<DiscountLogic>;
