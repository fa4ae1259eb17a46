#pragma once

#include <QDateTime>
#include <QMetaType>
#include <QString>

namespace till {

/// The state of the delivery, for a face's state line.
struct DeliveryState
{
    qint64 waiting = 0;           ///< Messages.
    QDateTime oldestWaiting = {}; ///< UTC; invalid when nothing waits.
    qint64 parked = 0;            ///< Parked messages.
    qint64 refused = 0;           ///< Receipts.
    QString error = {};           ///< Why the store cannot be read; the counts are then 0.

    bool operator==(const DeliveryState &other) const = default;
};

} // namespace till

Q_DECLARE_METATYPE(till::DeliveryState)
