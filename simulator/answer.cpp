#include "simulator/answer.h"

namespace simulator {

using namespace Qt::StringLiterals;

Answer success(QJsonObject body)
{
    body.insert("status"_L1, "Success"_L1);
    return {.body = std::move(body)};
}

Answer protocolError(int httpCode, const QString &message)
{
    return {httpCode, {{"status"_L1, "ProtocolError"_L1}, {"errorMessage"_L1, message}}};
}

Answer validationError(const QJsonArray &messages, int httpCode)
{
    return {httpCode, {{"status"_L1, "ValidationError"_L1}, {"validationMessages"_L1, messages}}};
}

Answer refusal(const QString &message, const QString &location)
{
    return validationError({QJsonObject{{"message"_L1, message}, {"location"_L1, location}}}, 200);
}

} // namespace simulator
