#include "host/restclient.h"

#include "host/exchangelog.h"
#include "host/restconnection.h"

#include <QJsonDocument>
#include <QUrl>

#include <algorithm>
#include <curl/curl.h>

template class MockFactory<RestClient>;

namespace {

thread_local http::Response lastOfThread;

} // namespace

RestClient::RestClient()
    : connection(std::make_unique<Connection>())
{}

RestClient::~RestClient() = default;

void RestClient::setTimeout(qint64 milliseconds)
{
    timeout = std::max<qint64>(milliseconds, 1);
}

void RestClient::setLogger(const Log4Qt::Logger *newLogger)
{
    logger = newLogger;
}

void RestClient::setCompactLogs(bool compact)
{
    compactLogs = compact;
}

void RestClient::send(const QUrl &url, const QJsonDocument &document,
                      const QHash<QString, QString> &headers)
{
    const ExchangeLog exchangeLog(logger, compactLogs, url, headers);
    exchangeLog.writeRequest(document);
    response = connection->exchange(url, document.toJson(QJsonDocument::Compact), headers, timeout);
    if (const auto error = connection->getError(); !error.isEmpty())
        exchangeLog.writeFailure(error, response.getTransportCode());
    else
        exchangeLog.writeAnswer(response);
    lastOfThread = response;
}

http::Response RestClient::getResponse() const
{
    return response;
}

http::Response RestClient::lastResponse()
{
    return lastOfThread;
}

QString RestClient::transportErrorText(int transportCode)
{
    return QString::fromUtf8(curl_easy_strerror(static_cast<CURLcode>(transportCode)));
}
