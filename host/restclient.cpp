#include "host/restclient.h"

#include "host/clock.h"
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

using namespace Qt::StringLiterals;

template class MockFactory<RestClient>;

namespace {

thread_local auto purposeOfThread = RestClient::Purpose::Sale;

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
    auto &service = *Singleton<ServiceAvailability>::instance();
    const auto begin = Clock::steady();
    const std::chrono::milliseconds usual(timeout);
    QString note;
    if (const auto patience = isDelivery ? usual : service.patience(usual); patience.count() > 0) {
        response = connection->exchange(url, document.toJson(QJsonDocument::Compact), headers,
                                        patience.count());
        service.note(outcomeOf(response.getTransportCode()), connection->getRetryAfter());
        note = connection->note();
    } else {
        response = {0, notSent, {}};
        const auto since = service.state().unreachableSince.toLocalTime();
        note = u"not sent, without an answer since %1"_s.arg(since.toString(u"hh:mm:ss"_s));
    }
    const Exchange exchange{url, response,
                            duration_cast<std::chrono::microseconds>(Clock::steady() - begin)};
    if (logger)
        logExchange(*logger,
                    {isDelivery ? "delivery"_L1 : "sale"_L1, document.object(), compactLogs},
                    exchange, note);
    if (const auto &observer = exchangeObserver())
        observer(exchange);
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
        return u"Not sent, the service has not answered before"_s;
    return QString::fromUtf8(curl_easy_strerror(static_cast<CURLcode>(transportCode)));
}
