#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

namespace simulator {

/// The service's answer to one request, in its form on the wire.
struct Answer
{
    int httpCode = 200;
    QJsonObject headers{}; ///< Texts by name.
    QByteArray body{};
    QJsonObject trailers{}; ///< They make the body chunked.

    /// Status line, headers and the blank line.
    QByteArray head() const;
    /// What follows the head.
    QByteArray rest() const;
    /// The status in the body; empty when there is none.
    QString outcome() const;
};

/// A JSON text.
Answer asJson(const QJsonValue &body, int httpCode = 200);
/// A success; adds the status to `body`.
Answer success(QJsonObject body = {});
/// A success whose `part` has this processing status beside the content.
Answer processed(QLatin1String part, const QJsonValue &processingStatus, QJsonObject content = {});
/// The request itself is wrong: its address, headers or format. Clients read "errorMessage" as
/// failure.
Answer protocolError(int httpCode, const QString &message);
/// The body has the wrong shape; one message for each mistake.
Answer validationError(const QJsonArray &messages, int httpCode = 400);
/// The service refuses a well-formed request, with HTTP 200 as services do. `location` is the
/// dotted path of the member at fault.
Answer refusal(const QString &message, const QString &location);
/// The first validation message with its location; empty when there is none.
QString inWords(const QJsonArray &messages);

} // namespace simulator
