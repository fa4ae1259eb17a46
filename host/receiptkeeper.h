#pragma once

#include "host/export.h"
#include "host/hostobject.h"

#include <QSharedPointer>

class AbstractDocument;

/// Saves the current receipt: the till's store, or another host's.
class HOST_EXPORT ReceiptKeeper : public HostObject
{
public:
    /// Saves the receipt with its plugin data, so that it survives a power cut.
    /// \return Whether it is saved; the keeper itself reports a failure.
    virtual bool keep(const QSharedPointer<AbstractDocument> &document) = 0;
};
