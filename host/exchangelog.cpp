#include "host/exchangelog.h"

#include "host/httpresponse.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QStringList>

#include <log4qt/logger.h>

namespace {

constexpr qsizetype longestBody = 1LL << 16;

constexpr auto mask = QLatin1String("***");

bool isConfirmationCode(const QString &key)
{
    return key == QLatin1String("code") || key == QLatin1String("authentificationCode") ||
           key == QLatin1String("authenticationCode");
}

QJsonValue withoutSecrets(const QJsonValue &value, const QStringList &secrets)
{
    if (value.isString()) {
        auto text = value.toString();
        for (const auto &secret : secrets)
            text.replace(secret, mask);
        return text;
    }
    if (value.isArray()) {
        QJsonArray result;
        for (const auto &element : value.toArray())
            result.append(withoutSecrets(element, secrets));
        return result;
    }
    if (value.isObject()) {
        const auto object = value.toObject();
        QJsonObject result;
        for (auto member = object.begin(); member != object.end(); ++member) {
            auto key = withoutSecrets(member.key(), secrets).toString();
            if (isConfirmationCode(key))
                result.insert(key, mask);
            else
                result.insert(key, withoutSecrets(member.value(), secrets));
        }
        return result;
    }
    return value;
}

/// What the headers' values hold between quotes.
QStringList quotedTexts(const QHash<QString, QString> &headers)
{
    QStringList result;
    for (const auto &value : headers) {
        const auto first = value.indexOf(QLatin1Char('"'));
        const auto last = value.lastIndexOf(QLatin1Char('"'));
        if (last > first + 1)
            result.append(value.mid(first + 1, last - first - 1));
    }
    return result;
}

} // namespace

ExchangeLog::ExchangeLog(const Log4Qt::Logger *logger, bool compact, const QUrl &url,
                         const QHash<QString, QString> &headers)
    : logger(logger)
    , detailed(logger && !compact && logger->isDebugEnabled())
    , url(url)
{
    duration.start();
    if (detailed)
        secrets = quotedTexts(headers);
}

void ExchangeLog::writeRequest(const QJsonDocument &document) const
{
    if (detailed)
        logger->debug(QStringLiteral("POST ") + printableUrl() + QLatin1Char(' ') +
                      printableBody(document));
}

void ExchangeLog::writeAnswer(const http::Response &response) const
{
    if (!detailed)
        return;
    const auto elapsed = duration.elapsed();
    const auto &body = response.getBody();
    const auto document = QJsonDocument::fromJson(body);
    const auto text = document.isNull()
                          ? QStringLiteral("%1 bytes that are no JSON").arg(body.size())
                          : printableBody(document);
    logger->debug(QStringLiteral("HTTP %1 in %2 ms: ").arg(response.getHttpCode()).arg(elapsed) +
                  text);
}

void ExchangeLog::writeFailure(const QString &reason, int transportCode) const
{
    if (logger)
        logger->warn(QStringLiteral("no answer from ") + printableUrl() + QLatin1String(": ") +
                     reason +
                     QStringLiteral(" (transport code %1, after %2 ms)")
                         .arg(transportCode)
                         .arg(duration.elapsed()));
}

QString ExchangeLog::printableUrl() const
{
    return url.toString(QUrl::RemoveUserInfo | QUrl::FullyEncoded);
}

QString ExchangeLog::printableBody(const QJsonDocument &document) const
{
    const auto value =
        document.isArray() ? QJsonValue(document.array()) : QJsonValue(document.object());
    const auto harmless = withoutSecrets(value, secrets);
    const auto json = (harmless.isArray() ? QJsonDocument(harmless.toArray())
                                          : QJsonDocument(harmless.toObject()))
                          .toJson(QJsonDocument::Compact);
    if (json.size() <= longestBody)
        return QString::fromUtf8(json);
    return QString::fromUtf8(json.first(longestBody)) +
           QStringLiteral("... (%1 bytes in all)").arg(json.size());
}
