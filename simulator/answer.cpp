#include "simulator/answer.h"

namespace simulator {

using namespace Qt::StringLiterals;

Answer success(QJsonObject body)
{
    body.insert("status"_L1, "Success"_L1);
    return {.httpCode = 200, .body = std::move(body)};
}

Answer protocolError(int httpCode, const QString &message)
{
    return {.httpCode = httpCode,
            .body = {{"status"_L1, "ProtocolError"_L1}, {"errorMessage"_L1, message}}};
}

Answer validationError(const QJsonArray &messages)
{
    return {.httpCode = 400,
            .body = {{"status"_L1, "ValidationError"_L1}, {"validationMessages"_L1, messages}}};
}

Answer refusal(const QString &message, const QString &location)
{
    auto answer = validationError({validationMessage(message, location)});
    answer.httpCode = 200;
    return answer;
}

QJsonObject validationMessage(const QString &message, const QString &location)
{
    return {{"message"_L1, message}, {"location"_L1, location}};
}

} // namespace simulator
