#pragma once

#include <host/config.h>
#include <host/restclient.h>

#include <QJsonDocument>
#include <QUrl>

/// Answers every request with the same response and records the requests.
class FakeRestClient : public RestClient
{
public:
    FakeRestClient() { MockFactory<RestClient>::mocked = this; }
    ~FakeRestClient() override { MockFactory<RestClient>::mocked = nullptr; }
    Q_DISABLE_COPY_MOVE(FakeRestClient)

    void setTimeout(qint64 milliseconds) override { timeout = milliseconds; }
    void setLogger(const Log4Qt::Logger *newLogger) override { logger = newLogger; }
    void setCompactLogs(bool compact) override { compactLogs = compact; }
    void send(const QUrl &url, const QJsonDocument &document,
              const QHash<QString, QString> &headers) override
    {
        ++requests;
        sentUrl = url;
        sentBody = document.object();
        sentHeaders = headers;
    }
    http::Response getResponse() const override { return {httpCode, transportCode, answer}; }

    int httpCode = 200;
    int transportCode = 0;
    QByteArray answer;

    int requests = 0;
    qint64 timeout = 0;
    const Log4Qt::Logger *logger = nullptr;
    bool compactLogs = true;
    QUrl sentUrl;
    QJsonObject sentBody;
    QHash<QString, QString> sentHeaders;
};
