#pragma once

#include "host/export.h"
#include "host/hostobject.h"
#include "host/mockfactory.h"

#include <QSharedPointer>
#include <QString>

class AbstractDocument;

/// Saves receipts on behalf of plugins.
class HOST_EXPORT SaveToFileLogic : public HostObject
{
public:
    /// Lets the session's keeper save the receipt with its plugin data. The name is not read: it is
    /// for hosts that save receipts to named files.
    /// \return Whether the receipt is on disk; false for a null document or without a keeper.
    virtual bool save(const QSharedPointer<AbstractDocument> &document, const QString &fileName);
};

extern template class HOST_EXPORT MockFactory<SaveToFileLogic>;
