#include "interface/interface.h"

#include <host/config.h>
#include <host/httpresponse.h>
#include <host/restclient.h>

#include <log4qt/logger.h>
#include <log4qt/logmanager.h>

#include <QHash>
#include <QJsonDocument>

namespace lmmindbox {

namespace {

// This host never exists, so nothing leaves the till without a configured address.
const auto defaultUrl = QStringLiteral("https://service.invalid/v3/operations/sync");

/// An item of the URL's query. Encodes every character itself, because QUrl keeps "+" and anything
/// that looks encoded.
QString queryItem(QLatin1String name, const QString &value)
{
    return name + QLatin1Char('=') + QString::fromLatin1(QUrl::toPercentEncoding(value));
}

} // namespace

Interface::Interface()
    : restClient(MockFactory<RestClient>::create())
    , logger(Log4Qt::LogManager::logger(QStringLiteral("lmmindbox")))
{
    const auto *config = Singleton<Config>::instance();
    endpoint = config->getText(QStringLiteral("LmMindbox:endpoint"));
    secretKey = config->getText(QStringLiteral("LmMindbox:secretKey"));
    pointOfContact =
        config->getText(QStringLiteral("LmMindbox:pointOfContact"), QStringLiteral("Offline"));
    url = QUrl(config->getText(QStringLiteral("LmMindbox:url"), defaultUrl));
    logger->info(QStringLiteral(" адрес сервера: %1"), url.toDisplayString(QUrl::RemoveUserInfo));

    const qint64 timeout = config->getInt(QStringLiteral("LmMindbox:timeout"), 5);
    restClient->setTimeout(timeout * 1000);
    restClient->setLogger(logger);
}

Interface::~Interface() = default;

OperationResult Interface::sendRequest(const QString &operation, const QJsonObject &body,
                                       const QString &transactionId)
{
    const auto redirect = Singleton<Config>::instance()->getText(
        QStringLiteral("LmMindbox.Redirect:%1").arg(operation), operation);
    logger->debug(QStringLiteral(" выполнение метода '%1'%2"), operation,
                  redirect == operation ? QString() : QStringLiteral(" -> '%1'").arg(redirect));

    const QHash<QString, QString> headers = {
        {QStringLiteral("Content-Type"), QStringLiteral("application/json; charset=utf-8")},
        {QStringLiteral("Accept"), QStringLiteral("application/json")},
        {QStringLiteral("Authorization"),
         QStringLiteral("Mindbox secretKey=\"%1\"").arg(secretKey)},
    };

    auto query = queryItem(QLatin1String("endpointId"), endpoint) + QLatin1Char('&') +
                 queryItem(QLatin1String("operation"), operation);
    if (!transactionId.isEmpty())
        query += QLatin1Char('&') + queryItem(QLatin1String("transactionId"), transactionId);
    // A query could make an invalid address valid again, with another host or port, and the secret
    // key must not go there.
    if (url.isValid())
        url.setQuery(query);

    auto envelope = body;
    envelope.insert(QLatin1String("pointOfContact"), pointOfContact);

    restClient->setCompactLogs(false);
    restClient->send(url, QJsonDocument(envelope), headers);
    return getRequestResult();
}

OperationResult Interface::getRequestResult() const
{
    const auto answer = restClient->getResponse();

    OperationResult result;
    result.response = answer.responseObject();
    result.httpCode = answer.getHttpCode();
    result.transportCode = answer.getTransportCode();

    const auto status = result.response.value(QLatin1String("status")).toString();
    result.status = getOperationStatus(status);
    const auto message = result.response.constFind(QLatin1String("errorMessage"));
    if (message != result.response.constEnd()) {
        logger->error(QStringLiteral("Статус: %1"), status);
        logger->error(QStringLiteral("Ошибка: %1"), message->toString());
        result.status = OperationStatus::Error;
    } else if (result.response.isEmpty() && result.httpCode != 200) {
        result.status = OperationStatus::Error;
        result.noConnection = true;
        result.error = tr::Tr(QStringLiteral("mindboxNoConnectionError"),
                              QStringLiteral("Ошибка связи с сервером"));
    }
    result.customer = getCustomer(result.response);
    return result;
}

} // namespace lmmindbox
