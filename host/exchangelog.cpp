#include "host/exchangelog.h"

#include "host/httpresponse.h"
#include "host/secretkey.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QStringList>
#include <QUrlQuery>

#include <log4qt/logger.h>

#include <utility>

namespace {

constexpr qsizetype longestBody = 1LL << 16;
constexpr qsizetype longestText = 300; ///< Of what an answer says, in the one line.
constexpr qsizetype shortestCode = 4;  ///< A shorter one stands in every other number.

constexpr auto mask = QLatin1String("***");

/// A confirmation code in compact JSON: what stands before its value, and the value.
const QRegularExpression &confirmationCode()
{
    static const QRegularExpression expression(QStringLiteral(
        R"re(("(?:code|authenti(?:fi)?cationCode)":)("(?:[^"\\]|\\.)*+"|[\[{][^\]}]*+[\]}]|[^,\]}]++))re"));
    return expression;
}

QString shortened(const QString &text, qsizetype longest)
{
    return text.size() <= longest
               ? text
               : text.left(longest) + QStringLiteral("... (%1 in all)").arg(text.size());
}

/// "status Success, order Processed": what the answer says of itself and of each thing in it.
QStringList statuses(const QJsonObject &answer)
{
    QStringList result{QLatin1String("status ") +
                       answer.value(QLatin1String("status")).toString(QStringLiteral("-"))};
    for (auto member = answer.begin(); member != answer.end(); ++member) {
        const auto status = member->toObject().value(QLatin1String("processingStatus"));
        if (status.isString())
            result += member.key() + QLatin1Char(' ') + status.toString();
    }
    return result;
}

QString messages(const QJsonObject &answer)
{
    QStringList result;
    if (const auto message = answer.constFind(QLatin1String("errorMessage"));
        message != answer.constEnd())
        result += message->toString();
    for (const auto &message : answer.value(QLatin1String("validationMessages")).toArray())
        result += message[QLatin1String("message")].toString();
    return result.join(QLatin1String("; "));
}

} // namespace

ExchangeLog::ExchangeLog(const Log4Qt::Logger *logger, bool compact, Request request)
    : logger(logger)
    , detailed(logger && !compact && logger->isDebugEnabled())
    , request(std::move(request))
{
    duration.start();
}

void ExchangeLog::writeRequest(const QByteArray &sentBody)
{
    body = sentBody;
    if (detailed)
        logger->debug(QStringLiteral("POST %1 %2"),
                      request.url.toString(QUrl::RemoveUserInfo | QUrl::FullyEncoded),
                      shortened(harmless(QString::fromUtf8(body)), longestBody));
}

void ExchangeLog::writeAnswer(const http::Response &response, const QString &note) const
{
    if (!logger)
        return;
    constexpr int success = 200;
    const auto elapsed = duration.elapsed();
    const auto answer = response.responseObject();
    const auto size = response.getBody().size();
    auto text = answer.isEmpty() ? QStringLiteral("%1 bytes that are no JSON object").arg(size)
                                 : statuses(answer).join(QLatin1String(", "));
    if (const auto told = messages(answer); !told.isEmpty())
        text += QLatin1String(": ") + told;
    text = shortened(harmless(text), longestText);
    if (response.getHttpCode() != success)
        text += note;
    logger->info(QStringLiteral("%1: HTTP %2 in %3 ms, %4"), subject(), response.getHttpCode(),
                 elapsed, text);
    if (detailed && !answer.isEmpty())
        logger->debug(QStringLiteral("answer: %1"),
                      shortened(harmless(QString::fromUtf8(
                                    QJsonDocument(answer).toJson(QJsonDocument::Compact))),
                                longestBody));
}

void ExchangeLog::writeFailure(const QString &reason, int transportCode) const
{
    if (logger)
        logger->warn(QStringLiteral("%1: no answer from %2 in %3 ms, transport code %4: %5"),
                     subject(), address(), duration.elapsed(), transportCode,
                     withoutSecretKey(reason));
}

/// "sale Offline.CreateOrder 00120300017", with "-" for the identifier where there is no order.
QString ExchangeLog::subject() const
{
    const auto operation =
        QUrlQuery(request.url).queryItemValue(QStringLiteral("operation"), QUrl::FullyDecoded);
    const auto ids =
        request.object[QLatin1String("order")][QLatin1String("ids")].toObject().toVariantMap();
    return QStringLiteral("%1 %2 %3")
        .arg(request.purpose, operation.isEmpty() ? QStringLiteral("-") : operation,
             ids.isEmpty() ? QStringLiteral("-") : ids.first().toString());
}

QString ExchangeLog::address() const
{
    return request.url.toString(QUrl::RemoveUserInfo | QUrl::RemoveQuery | QUrl::FullyEncoded);
}

/// The text, part of a body, without the key and the codes.
QString ExchangeLog::harmless(QString text) const
{
    const auto &expression = confirmationCode();
    text.replace(expression, QStringLiteral("\\1\"***\""));
    // So end the names of all codes; most bodies are long and hold none.
    const auto mayHoldCode = body.contains("ode\":");
    const auto sent = mayHoldCode ? QString::fromUtf8(body) : QString();
    for (auto found = expression.globalMatch(sent); found.hasNext();) {
        const auto code = found.next().captured(2).remove(QLatin1Char('"'));
        if (code.size() >= shortestCode)
            text.replace(code, mask);
    }
    return withoutSecretKey(text);
}
