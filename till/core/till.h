#pragma once

#include "till/core/deliverystate.h"
#include "till/core/filelock.h"
#include "till/core/loyaltyplugin.h"
#include "till/core/settings.h"
#include "till/core/store.h"
#include "till/core/unstoredreceipt.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

class DialogPresenter;

namespace till {

class BackgroundDelivery;
class Sale;

/// A till at work, without a face: lock, store, loyalty plugin, sale and delivery.
///
/// The settings must be loaded. Made and used in one thread, in which the sale and the loyalty
/// plugin live; the face's dialogs are called from it.
class Till : public QObject
{
    Q_OBJECT
public:
    /// The face must outlive the till.
    Till(const Settings &settings, DialogPresenter &face);
    ~Till() override;
    Q_DISABLE_COPY_MOVE(Till)

    /// Takes the data directory, opens the store, loads the plugin. \return Why the till cannot
    /// sell, nothing when it can.
    [[nodiscard]] std::optional<QString> start();
    /// What the cashier is to be told after `start`: a damaged store put aside and the like.
    const QStringList &notes() const { return startNotes; }
    /// Begins to deliver in the background, if the settings want it.
    void startDelivery();

    /// Not before a successful `start`; connect to its signals, then call `Sale::recover`.
    Sale &sale() { return *ownSale; }
    /// Asks the store; for a state line. From the till's thread; a face in another thread asks a
    /// `Store` of its own.
    DeliveryState deliveryState();
    QString pluginDescription() const { return plugin.description(); }

private:
    Settings settings;
    FileLock lock;
    QStringList startNotes;
    Store store;
    UnstoredMessages unstoredMessages;
    LoyaltyPlugin plugin;
    std::unique_ptr<Sale> ownSale;
    std::unique_ptr<BackgroundDelivery> delivery;
};

} // namespace till
