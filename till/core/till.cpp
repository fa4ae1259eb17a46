#include "till/core/till.h"

#include "till/core/backgrounddelivery.h"
#include "till/core/deliverer.h"
#include "till/core/legacydata.h"
#include "till/core/sale.h"

#include "interface/interface.h"

#include <host/dbqueuebroker.h>
#include <host/dialog.h>

#include <QThread>

namespace till {

Till::Till(const Settings &settings, DialogPresenter &face)
    : settings(settings)
    , lock(settings.dataDirectory + QLatin1String("/till.lock"))
    , exchanges(settings.dataDirectory)
    , told(face)
    , store(settings.dataDirectory)
{
    Dialog::setPresenter(&told);
    Singleton<DBQueueBroker>::instance()->setFile(Store::fileIn(settings.dataDirectory));
}

Till::~Till()
{
    delivery.reset();
    ownSale.reset();
    Singleton<DBQueueBroker>::instance()->setFile({});
    Dialog::setPresenter(nullptr);
}

std::optional<QString> Till::start()
{
    if (auto error = takePlace())
        return error;
    if (auto error = plugin.load(settings.pluginFile))
        return error;
    sellWith(plugin.getSystem());
    return std::nullopt;
}

std::optional<QString> Till::start(BasicLoyaltySystem &system)
{
    auto error = takePlace();
    if (!error)
        sellWith(system);
    return error;
}

std::optional<QString> Till::takePlace()
{
    auto state = lock.acquire();
    // Who only asks whether it is held, a monitor for one, holds it for a moment.
    for (int i = 0; i < 20 && state == FileLock::State::Busy; ++i) {
        QThread::msleep(10);
        state = lock.acquire();
    }
    if (state == FileLock::State::Busy)
        return QStringLiteral("%1: another till is selling here").arg(settings.dataDirectory);
    if (state == FileLock::State::Unavailable)
        startNote = lock.lastError() + u'\n';
    if (auto error = legacydata::adoptQueue(settings.dataDirectory))
        return error;
    startNote = (startNote + store.prepare()).trimmed();
    if (store.isForeign())
        return startNote;
    const auto adopted = legacydata::adoptReceipts(settings.dataDirectory, store, settings.place);
    startNote = (startNote + u'\n' + adopted).trimmed();
    return std::nullopt;
}

void Till::sellWith(BasicLoyaltySystem &system)
{
    ownSale =
        std::make_unique<Sale>(SaleParts{system, store, unstoredMessages, told, settings.place});
    exchanges.setUnstored(0);
    QObject::connect(ownSale.get(), &Sale::happened,
                     [this](const SaleEvent &event) { countUnstored(event); });
    QObject::connect(ownSale.get(), &Sale::messagesQueued, [this] {
        if (delivery)
            delivery->wake();
    });
}

/// For the monitor, which cannot look into the till's memory.
void Till::countUnstored(const SaleEvent &event)
{
    const auto before = toldUnstored.size();
    if (event.kind == SaleEvent::Kind::NotStored && event.number > 0)
        toldUnstored.insert(event.number);
    else if (event.kind == SaleEvent::Kind::StoredLate || event.kind == SaleEvent::Kind::Cancelled)
        toldUnstored.remove(event.number);
    if (toldUnstored.size() != before)
        exchanges.setUnstored(toldUnstored.size());
}

void Till::startDelivery()
{
    delivery = std::make_unique<BackgroundDelivery>(Store::fileIn(settings.dataDirectory),
                                                    unstoredMessages, settings.backoff);
}

DeliveryState Till::deliveryState()
{
    return store.deliveryState(loyaltyQueue());
}

QList<int> Till::onlyInMemory()
{
    const auto receipts = ownSale->unstored();
    if (receipts.isEmpty() || !unstoredMessages.first())
        return receipts;
    DBQueueBroker broker(Store::fileIn(settings.dataDirectory));
    lmmindbox::Interface service;
    Deliverer(broker, service).deliverUnstored(unstoredMessages, [] { return false; });
    return receipts;
}

} // namespace till
