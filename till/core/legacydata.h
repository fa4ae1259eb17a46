#pragma once

#include <QString>

#include <optional>

namespace till {

class Store;
struct TillPlace;

/// Brings what the first version of the till has left in a data directory into the store: its
/// queue in "queue.db" and its receipts and their numbers in JSON files.
namespace legacydata {

/// Makes the store out of the queue's file where there is no store yet. To be called before
/// anything opens the store. \return Why that cannot be, so that there must be no store either;
/// nothing when it was done or there was nothing to do.
[[nodiscard]] std::optional<QString> adoptQueue(const QString &directory);

/// Takes the receipts into the store, all in one transaction, and removes their files once they are
/// there. What cannot be read is moved into "damaged/". To be called by the till that has the
/// directory to itself. \return What the cashier is to be told, empty for nothing.
QString adoptReceipts(const QString &directory, Store &store, const TillPlace &place);

} // namespace legacydata

} // namespace till
