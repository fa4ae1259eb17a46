#pragma once

#include "host/restclient.h"

#include <QJsonObject>
#include <QLatin1String>
#include <QString>

/// A request as the log shows it.
struct LoggedRequest
{
    QLatin1String purpose;
    QJsonObject object;
    bool isCompact; ///< Whether the bodies are left out.
};

/// Logs one exchange. One line gives its subject and its outcome: at info level, or as a warning
/// when there was no answer. Both bodies follow at debug level.
///
/// Headers are never logged. The secret key and the customer's confirmation code appear as "***".
/// \param note Why no complete answer came, in English words; else a text appended to the line when
/// the answer's code is not 200.
void logExchange(const Log4Qt::Logger &logger, const LoggedRequest &request,
                 const RestClient::Exchange &exchange, const QString &note);
