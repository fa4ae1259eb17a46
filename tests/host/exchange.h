#pragma once

#include "support.h"
#include "tests/support/wireserver.h"

#include <host/config.h>
#include <host/restclient.h>
#include <host/serviceavailability.h>

#include <log4qt/logmanager.h>

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>

#include <curl/curl.h>

inline QUrl url(int port, const QString &scheme = u"http"_s)
{
    return QUrl(u"%1://127.0.0.1:%2/v3"_s.arg(scheme).arg(port) + u"?a=%2B+%26"_s);
}

inline QJsonDocument document(const QString &text)
{
    return QJsonDocument(QJsonObject{{u"text"_s, text}});
}

inline void set(const char *key, const QString &value)
{
    Singleton<Config>::instance()->set(QLatin1String(key), value);
}

/// A client with a log.
class LoggingClient : public RestClient
{
public:
    LoggingClient() { setLogger(Log4Qt::LogManager::logger(u"resttest"_s)); }

    http::Response ask(const QUrl &url, const QJsonDocument &body = document({}))
    {
        send(url, body, {{u"Authorization"_s, u"Mindbox secretKey=\"k\"ey\\ü\""_s}});
        return getResponse();
    }
    http::Response ask(const WireServer &server) { return ask(url(server.port)); }
};
