#include "till/window/tillthread.h"

#include "till/core/sale.h"
#include "till/core/till.h"
#include "till/window/windowpresenter.h"

#include <host/session.h>

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace till {

bool TillThread::tellsReceipt(const SaleEvent &event)
{
    using Kind = SaleEvent::Kind;
    return event.position.number == 0 && event.kind != Kind::Refused &&
           event.kind != Kind::NotStored && event.kind != Kind::StoredLate;
}

TillThread::TillThread(Settings settings, WindowPresenter &presenter)
    : settings(std::move(settings))
    , presenter(presenter)
{
    thread.setObjectName(u"till"_s);
    place.moveToThread(&thread);
}

TillThread::~TillThread()
{
    if (!thread.isRunning())
        return;
    presenter.setRefusing(true);
    QMetaObject::invokeMethod(&place, [this] {
        close();
        thread.quit();
    });
    // The till may be waiting for a question that is still queued for this thread.
    constexpr int moment = 10; // milliseconds
    while (!thread.wait(moment))
        QCoreApplication::sendPostedEvents(&presenter, QEvent::MetaCall);
}

void TillThread::start(const QString &meaning, bool delivers)
{
    thread.start();
    run(meaning, [this, delivers] { open(delivers); });
}

void TillThread::take(const QString &meaning, const std::function<void(Till &)> &step)
{
    run(meaning, [this, step] {
        if (till)
            step(*till);
    });
}

void TillThread::end(const QString &meaning, bool force)
{
    if (!thread.isRunning()) {
        emit ended();
        return;
    }
    run(meaning, [this, force] {
        const auto left = till ? till->onlyInMemory() : QList<int>();
        if (!left.isEmpty() && !force) {
            emit mayNotEnd(left);
            return;
        }
        close();
        emit ended();
    });
}

void TillThread::run(const QString &meaning, const std::function<void()> &function)
{
    steps.append(meaning);
    emit waitingChanged();
    QMetaObject::invokeMethod(&place, [this, function] {
        function();
        QMetaObject::invokeMethod(this, [this] {
            steps.removeFirst();
            presenter.endStep();
            emit waitingChanged();
        });
    });
}

void TillThread::open(bool delivers)
{
    const auto nobody = [](ProgressDisplay *) {}; // does not own the presenter
    Singleton<Session>::instance()->setProgressDisplay(
        QSharedPointer<ProgressDisplay>(&presenter, nobody));
    till = std::make_unique<Till>(settings, presenter);
    const auto canSell = till->start();
    if (!canSell) {
        close();
        emit started(false, canSell.error());
        return;
    }
    emit started(true, *canSell);
    connect(&till->sale(), &Sale::happened, &till->sale(), [this](const SaleEvent &event) {
        emit happened(event, tellsReceipt(event) ? till->sale().receipt() : std::nullopt);
    });
    // The store emits it in any thread; Qt queues it to this object's.
    connect(&till->store(), &Store::deliveryChanged, this, &TillThread::deliveryChanged);
    emit deliveryChanged(till->store().deliveryState());
    till->sale().recover();
    if (delivers)
        till->startDelivery();
}

void TillThread::close()
{
    till.reset();
    Singleton<Session>::instance()->setProgressDisplay({});
}

} // namespace till
