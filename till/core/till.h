#pragma once

#include "till/core/deliverystate.h"
#include "till/core/exchangecounts.h"
#include "till/core/filelock.h"
#include "till/core/loyaltyplugin.h"
#include "till/core/settings.h"
#include "till/core/store.h"
#include "till/core/toldtexts.h"
#include "till/core/unstoredmessages.h"

#include <QSet>
#include <QString>

#include <memory>
#include <optional>

namespace till {

class BackgroundDelivery;
class Sale;

/// A till at work, without a face: lock, store, loyalty plugin, sale and delivery.
///
/// The settings must be loaded into `Config`. Made and used in one thread, in which the sale and
/// the loyalty plugin live; the face's dialogs are called from it.
class Till
{
public:
    /// The face must outlive the till.
    Till(const Settings &settings, DialogPresenter &face);
    ~Till();
    Q_DISABLE_COPY_MOVE(Till)

    /// Takes the data directory, opens the store and loads the plugin. \return Why the till cannot
    /// sell, nothing when it can.
    [[nodiscard]] std::optional<QString> start();
    /// The same with a loyalty system of the caller's, which must outlive the till.
    [[nodiscard]] std::optional<QString> start(BasicLoyaltySystem &system);
    /// What was found wrong at the start and is no reason not to sell: a damaged store put aside,
    /// one that cannot be written. A text for the integrator, empty for nothing.
    const QString &note() const { return startNote; }
    /// Begins to deliver in the background.
    void startDelivery();

    /// Not before a successful `start`. Connect to its signals, then call `Sale::recover`.
    Sale &sale() { return *ownSale; }
    QString pluginDescription() const { return plugin.description(); }
    DeliveryState deliveryState();

    /// The receipts that would be lost if the till ended now. Tries first to bring what is only in
    /// memory to the disk, and to the service what the disk does not take.
    QList<int> onlyInMemory();

private:
    std::optional<QString> takePlace();
    void sellWith(BasicLoyaltySystem &system);
    void countUnstored(const SaleEvent &event);

    Settings settings;
    FileLock lock;
    ExchangeCounts exchanges;
    QString startNote;
    ToldTexts told;
    Store store;
    UnstoredMessages unstoredMessages;
    LoyaltyPlugin plugin;
    std::unique_ptr<Sale> ownSale;
    std::unique_ptr<BackgroundDelivery> delivery;
    QSet<int> toldUnstored; ///< Numbers of receipts told as being only in memory.
};

} // namespace till
