#pragma once

#include "host/export.h"
#include "host/formattersource.h"
#include "host/hostobject.h"
#include "host/mockfactory.h"

#include <QList>
#include <QSharedPointer>
#include <QVariantMap>

/// Questions about the receipt at hand.
class HOST_EXPORT DocumentLogic : public HostObject
{
public:
    /// The sources that masks about the current receipt are expanded over. `parameters` is kept
    /// for hosts with sources of their own and is not read. Empty when no receipt is open.
    virtual QList<QSharedPointer<FormatterSource>>
    getFormatterSources(const QVariantMap &parameters) const;
};

extern template class HOST_EXPORT MockFactory<DocumentLogic>;
