#include "simulator/answer.h"

#include <QJsonDocument>

namespace simulator {

using namespace Qt::StringLiterals;

namespace {

QByteArray fields(const QJsonObject &headers)
{
    QByteArray text;
    for (auto header = headers.begin(); header != headers.end(); ++header)
        text += header.key().toUtf8() + ": " + header->toString().toUtf8() + "\r\n";
    return text + "\r\n";
}

} // namespace

QByteArray Answer::head() const
{
    auto sent = headers;
    if (!trailers.isEmpty())
        sent.insert("Transfer-Encoding"_L1, "chunked"_L1);
    else if (!sent.contains("Content-Length"_L1))
        sent.insert("Content-Length"_L1, QString::number(body.size()));
    return "HTTP/1.1 " + QByteArray::number(httpCode) + " \r\n" + fields(sent);
}

QByteArray Answer::rest() const
{
    if (trailers.isEmpty())
        return body;
    const auto chunk = QByteArray::number(body.size(), 16) + "\r\n" + body + "\r\n";
    return (body.isEmpty() ? QByteArray() : chunk) + "0\r\n" + fields(trailers);
}

QString Answer::outcome() const
{
    const auto told = QJsonDocument::fromJson(body).object();
    for (const auto part : {"order"_L1, "smsConfirmation"_L1, "customer"_L1}) {
        if (const auto status = told[part]["processingStatus"_L1]; status.isString())
            return status.toString();
    }
    const auto status = told["status"_L1].toString();
    return status == "Success"_L1 && told.contains("errorMessage"_L1) ? u"Error"_s : status;
}

Answer asJson(const QJsonValue &body, int httpCode)
{
    // A document holds no single value, so it stands in an array.
    const auto text = QJsonDocument(QJsonArray{body}).toJson(QJsonDocument::Compact);
    return {.httpCode = httpCode,
            .headers = {{"Content-Type"_L1, "application/json; charset=utf-8"_L1}},
            .body = text.mid(1).chopped(1)};
}

Answer success(QJsonObject body)
{
    body.insert("status"_L1, "Success"_L1);
    return asJson(body);
}

Answer processed(QLatin1String part, const QJsonValue &processingStatus, QJsonObject content)
{
    content.insert("processingStatus"_L1, processingStatus);
    return success({{part, content}});
}

Answer protocolError(int httpCode, const QString &message)
{
    return asJson(QJsonObject{{"status"_L1, "ProtocolError"_L1}, {"errorMessage"_L1, message}},
                  httpCode);
}

Answer validationError(const QJsonArray &messages, int httpCode)
{
    return asJson(
        QJsonObject{{"status"_L1, "ValidationError"_L1}, {"validationMessages"_L1, messages}},
        httpCode);
}

Answer refusal(const QString &message, const QString &location)
{
    return validationError({QJsonObject{{"message"_L1, message}, {"location"_L1, location}}}, 200);
}

QString inWords(const QJsonArray &messages)
{
    return (messages[0]["location"_L1].toString() + u' ' + messages[0]["message"_L1].toString())
        .trimmed();
}

} // namespace simulator
