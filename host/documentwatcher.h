#pragma once

#include "host/export.h"

#include <QSharedPointer>

class AbstractDocument;

/// Holds the receipt that is open at the till.
class HOST_EXPORT DocumentWatcher
{
public:
    DocumentWatcher() = default;
    virtual ~DocumentWatcher();
    Q_DISABLE_COPY_MOVE(DocumentWatcher)

    /// Called by the till whenever another receipt is at hand; null for none.
    void setDocument(const QSharedPointer<AbstractDocument> &document)
    {
        currentDocument = document;
    }

protected:
    QSharedPointer<AbstractDocument> currentDocument;
};
