#pragma once

#include "tests/support/wireserver.h"

#include <host/config.h>
#include <host/restclient.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>

inline const QHash<QString, QString> headers{
    {QStringLiteral("Authorization"), QStringLiteral("Mindbox secretKey=\"k\"ey\\ü\"")}};

inline QUrl url(int port, const QString &scheme = QStringLiteral("http"))
{
    return QUrl(QStringLiteral("%1://127.0.0.1:%2/v3").arg(scheme).arg(port) +
                QStringLiteral("?a=%2B+%26"));
}

inline QJsonDocument document(const QString &text)
{
    return QJsonDocument(QJsonObject{{QStringLiteral("text"), text}});
}

inline void set(const char *key, const QString &value)
{
    Singleton<Config>::instance()->set(QLatin1String(key), value);
}

inline http::Response exchange(RestClient &client, const WireServer &server)
{
    client.send(url(server.port), document(QStringLiteral("привет")), headers);
    return client.getResponse();
}
