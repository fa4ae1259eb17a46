#include "simulator/wire.h"

#include <QJsonDocument>

namespace simulator {

QByteArray bytes(const std::string &text)
{
    return {text.data(), static_cast<qsizetype>(text.size())};
}

std::string bodyBytes(const QJsonObject &body)
{
    return body.isEmpty() ? std::string()
                          : QJsonDocument(body).toJson(QJsonDocument::Compact).toStdString();
}

void send(const Answer &answer, httplib::Response &response)
{
    response.status = answer.httpCode;
    response.set_content(bodyBytes(answer.body), jsonType);
}

} // namespace simulator
