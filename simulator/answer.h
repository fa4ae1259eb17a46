#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

namespace simulator {

/// What the service says to one request.
struct Answer
{
    int httpCode = 200;
    QJsonObject body{};
};

/// The operation was done; `body` gets the status.
Answer success(QJsonObject body = {});
/// The request itself is wrong: address, headers, form. Clients read "errorMessage" as failure.
Answer protocolError(int httpCode, const QString &message);
/// The body is of the wrong shape; one message for each fault found.
Answer validationError(const QJsonArray &messages, int httpCode = 400);
/// A well-formed request that the service does not grant, with HTTP 200 as services do. `location`
/// is the dotted path of the member it is about.
Answer refusal(const QString &message, const QString &location);

} // namespace simulator
