#pragma once

#include "till/core/receiptview.h"

#include <QFrame>

class QLabel;

namespace till {

/// Who the receipt's customer is.
class CustomerPanel : public QFrame
{
    Q_OBJECT
public:
    explicit CustomerPanel(QWidget *parent = nullptr);

    void show(const std::optional<Client> &customer);

private:
    QLabel *addRow(const QString &name, const QString &title);

    QLabel *name;
    QWidget *details;
    QLabel *phone;
    QLabel *email;
    QLabel *birthday;
    QLabel *receipts;
};

} // namespace till
