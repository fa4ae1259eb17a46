#pragma once

#include "till/core/store.h"
#include "till/window/dialogframe.h"

class QTreeWidget;

namespace till {

/// The receipts whose orders the service refused, with the reasons, each to be reported again.
class RefusedDialog : public DialogFrame
{
    Q_OBJECT
public:
    RefusedDialog(QWidget &window, const QList<ReceiptRecord> &receipts);

    /// Number of the receipt that was chosen; 0 for none.
    int chosen() const;

private:
    QTreeWidget *list;
};

} // namespace till
