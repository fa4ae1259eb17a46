#pragma once

#include "host/export.h"

#include <QSharedPointer>

class AbstractDocument;

/// Where the receipt at hand is kept: the till's store, or whatever a host has instead.
class HOST_EXPORT ReceiptKeeper
{
public:
    ReceiptKeeper() = default;
    virtual ~ReceiptKeeper();
    Q_DISABLE_COPY_MOVE(ReceiptKeeper)

    /// Keeps the receipt as it is now, its plugin data included, so that it survives a power cut.
    /// \return Whether it does; a failure is the keeper's to tell.
    virtual bool keep(const QSharedPointer<AbstractDocument> &document) = 0;
};
