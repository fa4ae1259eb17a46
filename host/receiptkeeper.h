#pragma once

#include "host/export.h"
#include "host/hostobject.h"

#include <QSharedPointer>

class AbstractDocument;

/// Where the receipt at hand is kept: the till's store, or whatever a host has instead.
class HOST_EXPORT ReceiptKeeper : public HostObject
{
public:
    /// Keeps the receipt as it is now, its plugin data included, so that it survives a power cut.
    /// \return Whether it does; a failure is the keeper's to tell.
    virtual bool keep(const QSharedPointer<AbstractDocument> &document) = 0;
};
