#include "host/httpresponse.h"

#include <QJsonDocument>

#include <utility>

namespace http {

Response::Response(int httpCode, int transportCode, QByteArray body)
    : httpCode(httpCode)
    , transportCode(transportCode)
    , body(std::move(body))
{}

QJsonObject Response::responseObject() const
{
    // The parser refuses what is not UTF-8 and what nests deeper than 1024 levels.
    return QJsonDocument::fromJson(body).object();
}

} // namespace http
