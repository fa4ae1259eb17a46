#pragma once

#include "till/core/deliverystate.h"

#include <host/serviceavailability.h>

#include <QFrame>

class QLabel;
class QPushButton;

namespace till {

/// Shows the state of service, queue and disk in one line.
class StateLine : public QFrame
{
    Q_OBJECT
public:
    explicit StateLine(QWidget *parent);

    void showService(const ServiceAvailability::State &state);
    void showDelivery(const DeliveryState &state);
    void showUnstored(qsizetype receipts);
    /// Shows the number of faults in the goods file.
    void showBadGoods(qsizetype lines);

signals:
    void refusedClicked();
    void badGoodsClicked();

private:
    template<typename Widget>
    Widget *add(Widget *part);

    QLabel *service;
    QPushButton *badGoods;
    QLabel *waiting;
    QPushButton *refused;
    QLabel *unstored;
};

} // namespace till
