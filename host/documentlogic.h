#pragma once

#include "host/export.h"
#include "host/formattersource.h"
#include "host/hostobject.h"
#include "host/mockfactory.h"

#include <QList>
#include <QSharedPointer>
#include <QVariantMap>

/// Queries on the current receipt.
class HOST_EXPORT DocumentLogic : public HostObject
{
public:
    /// The sources for masks about the current receipt; empty when no receipt is open. `parameters`
    /// is not read: it is for hosts with more sources.
    virtual QList<QSharedPointer<FormatterSource>>
    getFormatterSources(const QVariantMap &parameters) const;
};

extern template class HOST_EXPORT MockFactory<DocumentLogic>;
