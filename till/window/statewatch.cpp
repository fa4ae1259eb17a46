#include "till/window/statewatch.h"

#include "till/core/deliverer.h"

namespace till {

namespace {

constexpr int refusedShown = 100;

} // namespace

StateWatch::StateWatch(QString directory, QUrl service)
    : directory(std::move(directory))
    , service(std::move(service))
{
    using namespace std::chrono_literals;
    thread.setObjectName(QStringLiteral("state"));
    timer.setInterval(1s);
    timer.moveToThread(&thread);
    connect(&timer, &QTimer::timeout, &timer, [this] { read(); });
    connect(&thread, &QThread::started, &timer, [this] {
        store = std::make_unique<Store>(this->directory);
        read();
        timer.start();
    });
    connect(
        &thread, &QThread::finished, &timer,
        [this] {
            timer.stop();
            store.reset();
        },
        Qt::DirectConnection);
}

StateWatch::~StateWatch()
{
    thread.quit();
    thread.wait();
}

void StateWatch::start()
{
    thread.start(QThread::LowPriority);
}

void StateWatch::look()
{
    QMetaObject::invokeMethod(&timer, [this] { read(); });
}

void StateWatch::read()
{
    TillState state;
    state.service = Singleton<ServiceAvailability>::instance()->state(service);
    state.delivery = store->deliveryState(loyaltyQueue());
    state.waiting = store->countReported(Report::Queued).value_or(0);
    if (state.delivery.refused > 0)
        state.refused =
            store->list({Report::Refused, {}, refusedShown}).value_or(QList<ReceiptRecord>());
    emit looked(state);
}

} // namespace till
