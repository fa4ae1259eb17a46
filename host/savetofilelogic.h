#pragma once

#include "host/export.h"
#include "host/hostobject.h"
#include "host/mockfactory.h"

#include <QSharedPointer>
#include <QString>

class AbstractDocument;

/// Keeps receipts on behalf of plugins.
class HOST_EXPORT SaveToFileLogic : public HostObject
{
public:
    /// Has the session's keeper keep the receipt, its plugin data included. The name, for hosts
    /// that keep receipts in files of several names, is not read.
    /// \return Whether the receipt is on disk; false for a null document or without a keeper.
    virtual bool save(const QSharedPointer<AbstractDocument> &document, const QString &fileName);
};

extern template class HOST_EXPORT MockFactory<SaveToFileLogic>;
