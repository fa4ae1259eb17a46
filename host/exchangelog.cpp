#include "host/exchangelog.h"

#include "host/secretkey.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QStringList>
#include <QUrl>
#include <QUrlQuery>

#include <log4qt/logger.h>

#include <chrono>

using namespace Qt::StringLiterals;

namespace {

/// The answer's status and that of each entity in it: "status Success, order Processed: ...".
QString summaryOf(const QJsonObject &answer)
{
    QStringList statuses{"status "_L1 + answer["status"_L1].toString(u"-"_s)};
    for (auto member = answer.begin(); member != answer.end(); ++member) {
        const auto status = member->toObject().value("processingStatus"_L1);
        if (status.isString())
            statuses += member.key() + u' ' + status.toString();
    }
    QStringList messages;
    if (const auto message = answer["errorMessage"_L1]; !message.isUndefined())
        messages += message.toString();
    for (const auto &message : answer["validationMessages"_L1].toArray())
        messages += message["message"_L1].toString();
    return statuses.join(", "_L1) + (messages.isEmpty() ? u""_s : u": "_s + messages.join("; "_L1));
}

/// Such as "sale Offline.CreateOrder 00120300017"; the identifier is "-" without an order.
QString subjectOf(const LoggedRequest &request, const QUrl &url)
{
    const auto operation = QUrlQuery(url).queryItemValue(u"operation"_s, QUrl::FullyDecoded);
    const auto ids = request.object["order"_L1]["ids"_L1].toObject();
    const auto id = ids.isEmpty() ? QString() : ids.begin()->toVariant().toString();
    return u"%1 %2 %3"_s.arg(request.purpose, operation.isEmpty() ? u"-"_s : operation,
                             id.isEmpty() ? u"-"_s : id);
}

/// The text without the secret key and the typed code, shortened.
QString harmless(QString text, const QJsonObject &request, qsizetype longest)
{
    constexpr qsizetype shortestCode = 4; // a shorter code would also match other numbers
    for (const auto &code :
         {request["authentificationCode"_L1], request["smsConfirmation"_L1]["code"_L1]})
        if (code.toString().size() >= shortestCode)
            text.replace(code.toString(), u"***"_s);
    text = withoutSecretKey(text);
    return text.size() <= longest ? text
                                  : text.left(longest) + u"... (%1 in all)"_s.arg(text.size());
}

QString bodyText(const QJsonObject &object, const QJsonObject &request)
{
    constexpr qsizetype longestBody = 1LL << 16;
    return harmless(QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact)),
                    request, longestBody);
}

} // namespace

void logExchange(const Log4Qt::Logger &logger, const LoggedRequest &request,
                 const RestClient::Exchange &exchange, const QString &note)
{
    constexpr int success = 200;
    constexpr qsizetype longestSummary = 300;
    const auto &[url, response, duration] = exchange;
    const auto subject = subjectOf(request, url);
    const auto took = duration_cast<std::chrono::milliseconds>(duration).count();
    const auto answer = response.responseObject();
    if (const auto code = response.getTransportCode(); code != 0) {
        const auto service = QUrl::RemoveUserInfo | QUrl::RemoveQuery | QUrl::FullyEncoded;
        logger.warn(u"%1: no answer from %2 in %3 ms, transport code %4: %5"_s, subject,
                    url.toString(service), took, code, withoutSecretKey(note));
    } else {
        const auto text = answer.isEmpty()
                              ? u"%1 bytes that are no JSON object"_s.arg(response.getBody().size())
                              : harmless(summaryOf(answer), request.object, longestSummary);
        logger.info(u"%1: HTTP %2 in %3 ms, %4"_s, subject, response.getHttpCode(), took,
                    response.getHttpCode() == success ? text : text + note);
    }
    const auto isSent = response.getTransportCode() != RestClient::notSent;
    if (request.isCompact || !isSent || !logger.isDebugEnabled())
        return;
    logger.debug(u"POST %1 %2"_s, url.toString(QUrl::RemoveUserInfo | QUrl::FullyEncoded),
                 bodyText(request.object, request.object));
    if (!answer.isEmpty())
        logger.debug(u"answer: %1"_s, bodyText(answer, request.object));
}
