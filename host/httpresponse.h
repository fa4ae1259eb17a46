#pragma once

#include "host/export.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <utility>

namespace http {

/// The last answer of a `RestClient`.
class HOST_EXPORT Response
{
public:
    /// The state before any exchange: both codes are 0, as no exchange leaves them.
    Response() = default;
    Response(int httpCode, int transportCode, QByteArray content)
        : httpCode(httpCode)
        , transportCode(transportCode)
        , body(std::move(content))
        // The parser refuses what is not UTF-8 and what nests deeper than 1024 levels.
        , object(QJsonDocument::fromJson(body).object())
    {}

    /// HTTP status code; 0 when no complete answer arrived.
    int getHttpCode() const { return httpCode; }
    /// The transport's error code (libcurl's CURLcode); 0 after a complete exchange.
    int getTransportCode() const { return transportCode; }
    const QByteArray &getBody() const { return body; }
    /// The body as a JSON object; empty when the body is missing or no JSON object.
    QJsonObject responseObject() const { return object; }

private:
    int httpCode = 0;
    int transportCode = 0;
    QByteArray body;
    QJsonObject object;
};

} // namespace http
