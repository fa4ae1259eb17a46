#pragma once

#include "simulator/answer.h"
#include "simulator/options.h"

#include <QByteArray>
#include <QList>
#include <QMultiHash>
#include <QPair>
#include <QString>

#include <optional>

namespace simulator {

/// A request as it came off the wire, for the checks and for tests of what reached the service.
struct ReceivedRequest
{
    /// Splits `target` into the decoded query items, a plus read as a blank as web servers do.
    void readQuery();
    /// Decoded value of the first query item of that name, empty when there is none.
    QString queryItem(QLatin1String name) const;

    QByteArray method;
    QByteArray target;                          ///< Path and query, undecoded.
    QMultiHash<QByteArray, QByteArray> headers; ///< Names in lower case, values as sent.
    QByteArray body;
    QList<QPair<QString, QString>> query; ///< In the order sent.
};

/// Checks what surrounds the body of a request: query items and headers, exactly as agreed.
/// Returns the refusal, or nothing when the request may be read on.
std::optional<Answer> checkEnvelope(const ReceivedRequest &request, const Options &options);

} // namespace simulator
