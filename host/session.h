#pragma once

#include "host/export.h"
#include "host/hostobject.h"
#include "host/singleton.h"
#include "host/tr.h"

#include <QSharedPointer>

class AbstractDocument;
class ReceiptKeeper;

/// The till's progress display.
class HOST_EXPORT ProgressDisplay : public HostObject
{
public:
    /// Shows a text and the progress in percent.
    virtual void setProgress(const tr::Tr & /*text*/, int /*value*/) {}
};

/// The cashier's session: the current receipt and the progress display.
class HOST_EXPORT Session
{
public:
    /// The receipt the till is working on; null between receipts.
    QSharedPointer<AbstractDocument> getCurrentDocument() const { return currentDocument; }
    /// The till calls it before it tells the plugins; null between receipts.
    void setCurrentDocument(const QSharedPointer<AbstractDocument> &document)
    {
        currentDocument = document;
    }

    /// The keeper of the current receipt, not owned; null when receipts are not saved.
    ReceiptKeeper *getReceiptKeeper() const { return receiptKeeper; }
    /// Null removes the keeper. It is not owned and must live until then.
    void setReceiptKeeper(ReceiptKeeper *keeper) { receiptKeeper = keeper; }

    /// Never null; a display that shows nothing until the till sets its own.
    QSharedPointer<ProgressDisplay> getProgressDisplay() const { return progressDisplay; }
    /// Null restores the display that shows nothing.
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
