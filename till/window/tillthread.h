#pragma once

#include "till/core/saleevent.h"
#include "till/core/settings.h"
#include "till/window/goodsfile.h"

#include <QObject>
#include <QThread>

#include <functional>
#include <memory>
#include <optional>

namespace till {

class Till;
class WindowPresenter;

/// The till on a thread of its own, so that the window stays alive while the service is asked.
///
/// Lives on the window's thread, where its signals come. Steps run one after the other in the
/// order they are asked for.
class TillThread : public QObject
{
    Q_OBJECT
public:
    using Step = std::function<void(Till &)>;

    /// Whether `happened` tells the receipt after such an event; other events change a position at
    /// most.
    static bool tellsReceipt(SaleEvent::Kind kind);

    /// The presenter must outlive this object.
    TillThread(Settings settings, WindowPresenter &presenter);
    /// Waits for the step under way.
    ~TillThread() override;
    Q_DISABLE_COPY_MOVE(TillThread)

    /// Opens the till, takes up what an earlier run left, and begins to deliver if asked to.
    void start(bool delivers);
    /// Has the till take a step. Once it has ended, `done` is called on the window's thread, behind
    /// all that happened meanwhile.
    void take(const Step &step, const std::function<void()> &done = [] {});
    /// Runs a function on the till's thread, before the till has started too; then `done`.
    void run(const std::function<void()> &function, const std::function<void()> &done = [] {});
    bool isBusy() const { return steps > 0; }
    /// Ends the till if nothing would be lost; `force` ends it all the same.
    void end(bool force);

signals:
    /// The till can sell, or not. `note` is a text for the integrator, empty for nothing.
    void started(bool canSell, const QString &note);
    /// With the receipt after it, if `tellsReceipt`; nothing when none is open.
    void happened(const till::SaleEvent &event, const std::optional<till::ReceiptView> &receipt);
    void busyChanged();
    void stepEnded();
    /// These receipts would be lost.
    void mayNotEnd(const QList<int> &receipts);
    void ended();

private:
    void open(bool delivers);
    void close();
    void tell(const SaleEvent &event);

    const Settings settings;
    WindowPresenter &presenter;
    int steps = 0; ///< Asked for and not done.
    QThread thread;
    QObject place;              ///< Of the steps: an object of the till's thread.
    std::unique_ptr<Till> till; ///< Touched on the till's thread only.
};

} // namespace till
