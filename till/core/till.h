#pragma once

#include "till/core/deliverer.h"
#include "till/core/loyaltyplugin.h"
#include "till/core/settings.h"
#include "till/core/store.h"

#include <host/dialogpresenter.h>

#include <QString>

#include <memory>
#include <thread>

namespace till {

class Sale;

/// A till without a face: lock, store, loyalty plugin, sale and delivery.
///
/// The settings must be loaded into `Config`. Create and use the till in one thread: the sale, the
/// loyalty plugin and the calls of the face's dialogs stay in it.
class Till
{
public:
    /// Only a till that sells takes the data directory for itself.
    enum class Work { Sell, ReportOnly };

    /// The face must outlive the till.
    Till(const Settings &settings, DialogPresenter &face, Work work = Work::Sell);
    ~Till();
    Q_DISABLE_COPY_MOVE(Till)

    /// Takes the data directory, opens the store and loads the plugin. \return A note for the
    /// integrator about a fault that does not stop the sale, such as a damaged store; empty for
    /// none. The error says why the till cannot sell.
    [[nodiscard]] Store::Result<QString> start();
    /// The same with the caller's loyalty system, which must outlive the till.
    [[nodiscard]] Store::Result<QString> start(BasicLoyaltySystem &system);
    /// Starts the delivery in a thread of its own.
    void startDelivery();

    /// Only after a successful `start`. Connect to its signals, then call `Sale::recover`.
    Sale &sale() { return *ownSale; }
    Store &store() { return ownStore; }
    QString pluginDescription() const { return plugin.description(); }

    /// The numbers of the unsaved receipts, which would be lost if the till ended now. Tries first
    /// to save them, and to send the messages that the disk refuses.
    QList<int> onlyInMemory();

    /// The lock file of a till that sells from that data directory.
    static QString lockFile(const QString &dataDirectory);

private:
    Store::Result<QString> takePlace();
    void sellWith(BasicLoyaltySystem &system);

    Settings settings;
    Work work;
    ProcessLock lock;
    Store ownStore;
    LoyaltyPlugin plugin;
    std::unique_ptr<Sale> ownSale;
    Deliverer deliverer;
    std::thread delivery;
};

} // namespace till
