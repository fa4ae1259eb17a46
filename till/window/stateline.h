#pragma once

#include "till/window/statewatch.h"

#include <QFrame>

class QLabel;
class QPushButton;

namespace till {

/// How the till stands with the service and its disk, in one line.
class StateLine : public QFrame
{
    Q_OBJECT
public:
    explicit StateLine(QWidget *parent = nullptr);

    void show(const TillState &state);
    void showUnstored(qsizetype receipts);

signals:
    void refusedClicked();

private:
    void showService(const ServiceAvailability::State &state);
    void showDelivery(const TillState &state);
    QLabel *addLabel(const QString &name);

    QLabel *service;
    QLabel *waiting;
    QPushButton *refused;
    QLabel *unstored;
};

} // namespace till
