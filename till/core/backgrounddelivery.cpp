#include "till/core/backgrounddelivery.h"

#include "till/core/deliverer.h"
#include "till/core/retention.h"

#include "interface/interface.h"

#include <host/dbqueuebroker.h>
#include <host/restclient.h>

#include <QFileInfo>

namespace till {

BackgroundDelivery::BackgroundDelivery(const QString &queueFile, UnstoredMessages &unstored,
                                       const BackoffRange &range)
    : thread([this, queueFile, &unstored, range] { deliver(queueFile, unstored, range); })
{}

BackgroundDelivery::~BackgroundDelivery()
{
    set(stopped);
    thread.join();
}

bool BackgroundDelivery::isStopped()
{
    const std::scoped_lock guard(mutex);
    return stopped;
}

void BackgroundDelivery::rest(std::chrono::milliseconds time, bool wakeable)
{
    std::unique_lock guard(mutex);
    condition.wait_for(guard, time, [this, wakeable] { return stopped || (wakeable && woken); });
    woken = false;
}

/// The client and the broker belong to the thread that uses them.
void BackgroundDelivery::deliver(const QString &queueFile, UnstoredMessages &unstored,
                                 const BackoffRange &range)
{
    RestClient::setPurpose(RestClient::Purpose::Delivery);
    DBQueueBroker broker(queueFile);
    lmmindbox::Interface service;
    Deliverer deliverer(broker, service);
    DeliveryLoop loop(deliverer, Backoff(range), *this);
    loop.setUnstoredMessages(&unstored);
    Retention retention(QFileInfo(queueFile).path());
    loop.setWhenIdle([&retention] { retention.step(); });
    loop.run();
}

void BackgroundDelivery::set(bool &flag)
{
    {
        const std::scoped_lock guard(mutex);
        flag = true;
    }
    condition.notify_one();
}

} // namespace till
