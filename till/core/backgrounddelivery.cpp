#include "till/core/backgrounddelivery.h"

#include "till/core/deliverer.h"
#include "till/core/deliveryloop.h"
#include "till/core/retention.h"
#include "till/core/unstoredmessages.h"

#include "interface/interface.h"

#include <host/dbqueuebroker.h>
#include <host/restclient.h>

#include <QFileInfo>

#include <condition_variable>
#include <mutex>
#include <thread>

namespace till {

class BackgroundDelivery::Thread : public DeliveryPause
{
public:
    Thread(const QString &queueFile, UnstoredMessages &unstored, const BackoffRange &range)
        : thread([this, queueFile, &unstored, range] { deliver(queueFile, unstored, range); })
    {}

    ~Thread() override
    {
        notify([this] { stopped = true; });
        thread.join();
    }
    Q_DISABLE_COPY_MOVE(Thread)

    void wake()
    {
        notify([this] { woken = true; });
    }

    bool isStopped() override
    {
        const std::lock_guard guard(mutex);
        return stopped;
    }

    void rest(std::chrono::milliseconds time, bool wakeable) override
    {
        std::unique_lock guard(mutex);
        condition.wait_for(guard, time,
                           [this, wakeable] { return stopped || (wakeable && woken); });
        woken = false;
    }

private:
    /// The client and the broker belong to the thread that uses them.
    void deliver(const QString &queueFile, UnstoredMessages &unstored, const BackoffRange &range)
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

    template<typename Change>
    void notify(Change change)
    {
        {
            const std::lock_guard guard(mutex);
            change();
        }
        condition.notify_one();
    }

    std::mutex mutex;
    std::condition_variable condition;
    bool stopped = false;
    bool woken = false;
    std::thread thread; // the last member: it uses the others
};

BackgroundDelivery::BackgroundDelivery(const QString &queueFile, UnstoredMessages &unstored,
                                       const BackoffRange &range)
    : thread(std::make_unique<Thread>(queueFile, unstored, range))
{}

BackgroundDelivery::~BackgroundDelivery() = default;

void BackgroundDelivery::wake()
{
    thread->wake();
}

} // namespace till
