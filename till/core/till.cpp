#include "till/core/till.h"

#include "till/core/retention.h"
#include "till/core/sale.h"
#include "till/core/toldtexts.h"

#include <host/dialog.h>
#include <host/httpresponse.h>
#include <host/restclient.h>

#include <QThread>

using namespace Qt::StringLiterals;

namespace till {

Till::Till(const Settings &settings, DialogPresenter &face, Work work)
    : settings(settings)
    , work(work)
    , lock(lockFile(settings.dataDirectory))
    , ownStore(settings.dataDirectory)
    , deliverer(ownStore, settings.dataDirectory, settings.backoff)
{
    Dialog::setPresenter(&face, [this](const QString &text, bool isNotice) {
        logTold(text);
        if (isNotice && ownSale)
            ownSale->noteTold(text);
    });
    RestClient::setObserver([this, own = QThread::currentThread()](const auto &exchange) {
        ownStore.count(exchange);
        if (ownSale && QThread::currentThread() == own)
            ownSale->noteAnswer(exchange.response);
    });
}

Till::~Till()
{
    deliverer.stop();
    if (delivery.joinable())
        delivery.join();
    RestClient::setObserver({});
    ownSale.reset();
    Dialog::setPresenter(nullptr);
}

QString Till::lockFile(const QString &dataDirectory)
{
    return dataDirectory + "/till.lock"_L1;
}

Store::Result<QString> Till::start()
{
    return takePlace().and_then([this](const QString &note) -> Store::Result<QString> {
        return plugin.load(settings.pluginFile).map([&] {
            sellWith(plugin.getSystem());
            return note;
        });
    });
}

Store::Result<QString> Till::start(BasicLoyaltySystem &system)
{
    return takePlace().map([&](const QString &note) {
        sellWith(system);
        return note;
    });
}

Store::Result<QString> Till::takePlace()
{
    const auto held = work == Work::Sell ? lock.acquire() : tl::expected<void, QString>();
    if (!held && lock.holder())
        return tl::unexpected(u"another till is selling here: %1"_s.arg(held.error()));
    return ownStore.prepare().map([&](const QString &note) {
        QStringList notes{held ? QString() : held.error(), note};
        notes.removeAll(QString());
        return notes.join(u'\n');
    });
}

void Till::sellWith(BasicLoyaltySystem &system)
{
    ownSale = std::make_unique<Sale>(system, ownStore, settings.place);
    QObject::connect(ownSale.get(), &Sale::messagesQueued, [this] { deliverer.wake(); });
}

void Till::startDelivery()
{
    delivery = std::thread([this] {
        Retention retention(ownStore);
        deliverer.run([&retention] { retention.step(); });
    });
}

QList<int> Till::onlyInMemory()
{
    auto receipts = ownStore.unsaved();
    // The delivery's own thread sends them anyway.
    if (!receipts.isEmpty() && !delivery.joinable())
        deliverer.deliverUnsaved();
    return receipts;
}

} // namespace till
