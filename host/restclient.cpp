#include "host/restclient.h"

#include "host/exchangelog.h"
#include "host/restconnection.h"
#include "host/serviceavailability.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QUrl>

#include <algorithm>
#include <chrono>
#include <curl/curl.h>
#include <utility>

template class MockFactory<RestClient>;

namespace {

thread_local http::Response lastOfThread;
thread_local auto purposeOfThread = RestClient::Purpose::Sale;

using Clock = std::chrono::steady_clock;

std::function<void(const RestClient::Exchange &)> &exchangeObserver()
{
    static std::function<void(const RestClient::Exchange &)> observer;
    return observer;
}

ServiceAvailability::Outcome outcomeOf(int transportCode)
{
    switch (transportCode) {
    case CURLE_OK:
        return ServiceAvailability::Outcome::Answered;
    case CURLE_OPERATION_TIMEDOUT:
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY:
    case CURLE_COULDNT_CONNECT:
    case CURLE_SSL_CONNECT_ERROR:
        return ServiceAvailability::Outcome::Unreachable;
    default:
        return ServiceAvailability::Outcome::Broken;
    }
}

} // namespace

RestClient::RestClient()
    : connection(std::make_unique<Connection>())
{}

RestClient::~RestClient() = default;

void RestClient::setTimeout(qint64 milliseconds)
{
    timeout = std::max<qint64>(milliseconds, 1);
}

void RestClient::send(const QUrl &url, const QJsonDocument &document,
                      const QHash<QString, QString> &headers)
{
    const auto isDelivery = purposeOfThread == Purpose::Delivery;
    ExchangeLog exchangeLog(
        logger, compactLogs,
        {QLatin1String(isDelivery ? "delivery" : "sale"), url, document.object()});
    auto &services = *Singleton<ServiceAvailability>::instance();
    const auto begin = Clock::now();
    const std::chrono::milliseconds usual(timeout);
    if (const auto patience = isDelivery ? usual : services.patience(url, usual);
        patience.count() > 0) {
        const auto body = document.toJson(QJsonDocument::Compact);
        exchangeLog.writeRequest(body);
        response = connection->exchange(url, body, headers, patience.count());
        services.note(url, outcomeOf(response.getTransportCode()), connection->getRetryAfter());
        if (const auto error = connection->getError(); !error.isEmpty())
            exchangeLog.writeFailure(error, response.getTransportCode());
        else
            exchangeLog.writeAnswer(response, connection->getProxy().note());
    } else {
        response = {0, notSent, {}};
        const auto since = services.state(url).unreachableSince.toLocalTime();
        exchangeLog.writeFailure(QStringLiteral("not sent, without an answer since %1")
                                     .arg(since.toString(QStringLiteral("hh:mm:ss"))),
                                 notSent);
    }
    lastOfThread = response;
    if (const auto &observer = exchangeObserver())
        observer({url, response, duration_cast<std::chrono::microseconds>(Clock::now() - begin)});
}

http::Response RestClient::lastResponse()
{
    return lastOfThread;
}

void RestClient::setPurpose(Purpose purpose)
{
    purposeOfThread = purpose;
}

void RestClient::setObserver(std::function<void(const Exchange &)> observer)
{
    exchangeObserver() = std::move(observer);
}

QString RestClient::transportErrorText(int transportCode)
{
    if (transportCode == notSent)
        return QStringLiteral("Not sent, the service has not answered before");
    return QString::fromUtf8(curl_easy_strerror(static_cast<CURLcode>(transportCode)));
}
