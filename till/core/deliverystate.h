#pragma once

#include <QDateTime>
#include <QMetaType>
#include <QString>

namespace till {

/// How the delivery of waiting messages stands: what a face's state line shows.
struct DeliveryState
{
    qint64 waiting = 0;      ///< Messages.
    QDateTime oldestWaiting; ///< UTC; invalid when nothing waits.
    qint64 parked = 0;       ///< Messages put aside.
    qint64 refused = 0;      ///< Receipts.
    QString error;           ///< Why the store cannot be read; the counts are zeros then.

    bool operator==(const DeliveryState &other) const = default;
};

} // namespace till

Q_DECLARE_METATYPE(till::DeliveryState)
