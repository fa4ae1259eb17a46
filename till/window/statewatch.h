#pragma once

#include "till/core/store.h"

#include <host/serviceavailability.h>

#include <QObject>
#include <QThread>
#include <QTimer>
#include <QUrl>

#include <memory>

namespace till {

/// What the state line shows.
struct TillState
{
    ServiceAvailability::State service;
    DeliveryState delivery;
    qint64 waiting = 0;           ///< Receipts something of whose report waits for delivery.
    QList<ReceiptRecord> refused; ///< The latest receipts whose order was refused.
};

/// Looks at the till's store and its service again and again, on a thread of its own: a slow disk
/// must not stop the window.
class StateWatch : public QObject
{
    Q_OBJECT
public:
    StateWatch(QString directory, QUrl service);
    ~StateWatch() override;
    Q_DISABLE_COPY_MOVE(StateWatch)

    /// Not before the till has started: the store is its to prepare.
    void start();
    /// Looks at once.
    void look();

signals:
    void looked(const till::TillState &state);

private:
    void read();

    const QString directory;
    const QUrl service;
    QThread thread;
    QTimer timer; ///< On the thread, as is the next.
    std::unique_ptr<Store> store;
};

} // namespace till
