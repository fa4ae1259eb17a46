#pragma once

#include "till/core/deliverystate.h"
#include "till/core/saleevent.h"
#include "till/core/settings.h"

#include <QObject>
#include <QThread>

#include <functional>
#include <memory>
#include <optional>

namespace till {

class Till;
class WindowPresenter;

/// Runs the till on its own thread, so that the window stays responsive during requests.
///
/// Lives on the window's thread, where it emits its signals. Runs steps one by one, in order.
class TillThread : public QObject
{
    Q_OBJECT
public:
    /// Whether `happened` carries the receipt for such an event. Other events change at most a
    /// position.
    static bool tellsReceipt(const SaleEvent &event);

    /// The presenter must outlive this object.
    TillThread(Settings settings, WindowPresenter &presenter);
    /// Waits for the current step.
    ~TillThread() override;
    Q_DISABLE_COPY_MOVE(TillThread)

    /// Opens the till, finishes an earlier run's work, and starts the delivery if `delivers`.
    void start(const QString &meaning, bool delivers);
    /// Takes a step on the till's thread; `meaning` tells the cashier what the step does.
    void take(const QString &meaning, const std::function<void(Till &)> &step);
    /// The meanings of the unfinished steps, the current one first.
    const QStringList &waiting() const { return steps; }
    /// Ends the till unless receipts are unsaved; `force` ends it anyway.
    void end(const QString &meaning, bool force);

signals:
    /// The till has started, or failed to. `note` is for the integrator; empty for none.
    void started(bool canSell, const QString &note);
    /// An event of the sale. `receipt` is the open receipt after it, if `tellsReceipt`.
    void happened(const till::SaleEvent &event, const std::optional<till::ReceiptView> &receipt);
    void deliveryChanged(const till::DeliveryState &state);
    /// A step was added or has ended.
    void waitingChanged();
    /// The till has not ended, because these receipts are unsaved.
    void mayNotEnd(const QList<int> &receipts);
    void ended();

private:
    void run(const QString &meaning, const std::function<void()> &function);
    void open(bool delivers);
    void close();

    const Settings settings;
    WindowPresenter &presenter;
    QStringList steps; ///< The meanings of the unfinished steps.
    QThread thread;
    QObject place;              ///< Lives on the till's thread; steps are posted to it.
    std::unique_ptr<Till> till; ///< Used only on the till's thread.
};

} // namespace till
