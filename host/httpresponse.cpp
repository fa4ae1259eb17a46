#include "host/httpresponse.h"

#include <QJsonDocument>

#include <utility>

namespace http {

Response::Response(int httpCode, int transportCode, QByteArray content)
    : httpCode(httpCode)
    , transportCode(transportCode)
    , body(std::move(content))
    // The parser refuses what is not UTF-8 and what nests deeper than 1024 levels.
    , object(QJsonDocument::fromJson(body).object())
{}

} // namespace http
