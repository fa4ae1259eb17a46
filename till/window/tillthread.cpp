#include "till/window/tillthread.h"

#include "till/core/sale.h"
#include "till/core/till.h"
#include "till/window/windowpresenter.h"

#include <host/session.h>

#include <QCoreApplication>
#include <QDeadlineTimer>

namespace till {

bool TillThread::tellsReceipt(SaleEvent::Kind kind)
{
    using Kind = SaleEvent::Kind;
    switch (kind) {
    case Kind::PositionAdded:
    case Kind::PositionChanged:
    case Kind::PositionRemoved:
    case Kind::Discounted:
    case Kind::Refused:
    case Kind::NotStored:
    case Kind::StoredLate:
        return false;
    default:
        return true;
    }
}

TillThread::TillThread(Settings settings, WindowPresenter &presenter)
    : settings(std::move(settings))
    , presenter(presenter)
{
    thread.setObjectName(QStringLiteral("till"));
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
    // A question of the till may still be on its way to the window's thread, which is this one.
    using namespace std::chrono_literals;
    while (!thread.wait(QDeadlineTimer(10ms)))
        QCoreApplication::sendPostedEvents(&presenter, QEvent::MetaCall);
}

void TillThread::start(bool delivers)
{
    thread.start();
    run([this, delivers] { open(delivers); });
}

void TillThread::take(const Step &step, const std::function<void()> &done)
{
    run(
        [this, step] {
            if (till)
                step(*till);
        },
        done);
}

void TillThread::end(bool force)
{
    if (!thread.isRunning()) {
        emit ended();
        return;
    }
    run([this, force] {
        const auto left = till ? till->onlyInMemory() : QList<int>();
        if (!left.isEmpty() && !force) {
            emit mayNotEnd(left);
            return;
        }
        close();
        emit ended();
    });
}

void TillThread::run(const std::function<void()> &function, const std::function<void()> &done)
{
    ++steps;
    emit busyChanged();
    QMetaObject::invokeMethod(
        &place,
        [this, function, done] {
            function();
            QMetaObject::invokeMethod(
                this,
                [this, done] {
                    --steps;
                    emit stepEnded();
                    done();
                    emit busyChanged();
                },
                Qt::QueuedConnection);
        },
        Qt::QueuedConnection);
}

void TillThread::open(bool delivers)
{
    const auto nobody = [](ProgressDisplay *) {}; // owns the presenter
    Singleton<Session>::instance()->setProgressDisplay(
        QSharedPointer<ProgressDisplay>(&presenter, nobody));
    till = std::make_unique<Till>(settings, presenter);
    if (const auto problem = till->start()) {
        close();
        emit started(false, *problem);
        return;
    }
    emit started(true, till->note());
    connect(&till->sale(), &Sale::happened, &till->sale(),
            [this](const SaleEvent &event) { tell(event); });
    till->sale().recover();
    if (delivers)
        till->startDelivery();
}

void TillThread::close()
{
    till.reset();
    Singleton<Session>::instance()->setProgressDisplay({});
}

void TillThread::tell(const SaleEvent &event)
{
    emit happened(event, tellsReceipt(event.kind) ? till->sale().receipt() : std::nullopt);
}

} // namespace till
