#pragma once

#include "host/proxy.h"
#include "host/restclient.h"

#include <QByteArray>
#include <QHash>
#include <QString>

#include <curl/curl.h>

#include <array>
#include <chrono>
#include <optional>

class QUrl;

/// The libcurl handle with the exchange it is busy with.
class RestClient::Connection
{
public:
    Connection();
    ~Connection() { curl_easy_cleanup(handle); }
    Q_DISABLE_COPY_MOVE(Connection)

    http::Response exchange(const QUrl &url, const QByteArray &body,
                            const QHash<QString, QString> &headers, qint64 timeout);
    /// Why the last exchange has no answer; empty when it has one.
    QString getError() const { return error; }
    /// How long the last answer asked to be left alone; 0 when it did not.
    std::chrono::seconds getRetryAfter() const { return retryAfter; }
    const Proxy &getProxy() const { return proxy; }

private:
    template<typename Value>
    void set(CURLoption option, Value value)
    {
        // A libcurl without the option would fail on every exchange in silence.
        if (const auto code = curl_easy_setopt(handle, option, value); code != CURLE_OK)
            warnOfOption(option, code);
    }
    static void warnOfOption(CURLoption option, CURLcode code);
    void trustConfiguredAuthority();
    bool idleConnectionIsDirty() const;
    http::Response perform();

    static size_t receiveHeader(char *from, size_t size, size_t count, void *connection);
    static size_t receiveBody(char *from, size_t size, size_t count, void *connection);
    static int refuseRepetition(void *connection, char *peerAddress, char *ownAddress, int peerPort,
                                int ownPort);
    bool countReceived(size_t size);
    bool isAnswerCut() const;
    bool hasHeader(const char *name) const;

    CURL *handle = nullptr;
    std::array<char, CURL_ERROR_SIZE> errorText{};
    QString error;
    Proxy proxy;
    std::chrono::seconds retryAfter{0};
    std::optional<long> sentBefore; ///< Bytes that went out before the request's first try.
    QByteArray answer;
    qint64 received = 0;
    bool headComplete = false;
};
