#pragma once

#include "host/export.h"
#include "host/hostobject.h"
#include "host/singleton.h"
#include "host/tr.h"

#include <QSharedPointer>

class AbstractDocument;
class ReceiptKeeper;

/// Where the till shows how far a step has come.
class HOST_EXPORT ProgressDisplay : public HostObject
{
public:
    /// Shows a text and the share done in percent.
    virtual void setProgress(const tr::Tr & /*text*/, int /*value*/) {}
};

/// The cashier's session: the receipt at hand and the progress display.
class HOST_EXPORT Session
{
public:
    /// The receipt the till is working on; null between receipts.
    QSharedPointer<AbstractDocument> getCurrentDocument() const { return currentDocument; }
    /// Null between receipts; the till calls it before it tells the plugins.
    void setCurrentDocument(const QSharedPointer<AbstractDocument> &document)
    {
        currentDocument = document;
    }

    /// Who keeps the receipt at hand; null when it is not kept at all. Not owned.
    ReceiptKeeper *getReceiptKeeper() const { return receiptKeeper; }
    /// Null for nobody; must outlive its use here.
    void setReceiptKeeper(ReceiptKeeper *keeper) { receiptKeeper = keeper; }

    /// Never null; a display that shows nothing until the till sets its own.
    QSharedPointer<ProgressDisplay> getProgressDisplay() const { return progressDisplay; }
    /// Null for one that shows nothing.
    void setProgressDisplay(const QSharedPointer<ProgressDisplay> &display)
    {
        progressDisplay = display ? display : QSharedPointer<ProgressDisplay>::create();
    }

private:
    QSharedPointer<AbstractDocument> currentDocument;
    ReceiptKeeper *receiptKeeper = nullptr;
    QSharedPointer<ProgressDisplay> progressDisplay = QSharedPointer<ProgressDisplay>::create();
};

extern template class HOST_EXPORT Singleton<Session>;
