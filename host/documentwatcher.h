#pragma once

#include "host/export.h"
#include "host/hostobject.h"

#include <QSharedPointer>

class AbstractDocument;

/// Holds the receipt that is open at the till.
class HOST_EXPORT DocumentWatcher : public HostObject
{
public:
    /// The till calls it when the current receipt changes; null for none.
    void setDocument(const QSharedPointer<AbstractDocument> &document)
    {
        currentDocument = document;
    }

protected:
    QSharedPointer<AbstractDocument> currentDocument;
};
