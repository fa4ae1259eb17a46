#pragma once

#include "host/restclient.h"

#include <QByteArray>
#include <QHash>
#include <QString>

#include <curl/curl.h>

#include <array>
#include <chrono>
#include <optional>

class QUrl;

/// The libcurl handle with its current exchange.
class RestClient::Connection
{
public:
    Connection();
    ~Connection() { curl_easy_cleanup(handle); }
    Q_DISABLE_COPY_MOVE(Connection)

    http::Response exchange(const QUrl &url, const QByteArray &body,
                            const QHash<QString, QString> &headers, qint64 timeout);
    /// The reason why the last exchange has no answer, or the peer of the one that has.
    QString note() const { return error.isEmpty() ? peerNote() : error; }
    /// The last answer's Retry-After; 0 without one.
    std::chrono::seconds getRetryAfter() const { return retryAfter; }

private:
    template<typename Value>
    void set(CURLoption option, Value value)
    {
        // With a libcurl that lacks the option every exchange would fail without a reason.
        if (const auto code = curl_easy_setopt(handle, option, value); code != CURLE_OK)
            warnOfOption(option, code);
    }
    static void warnOfOption(CURLoption option, CURLcode code);
    void trustConfiguredAuthority();
    void setProxy();
    bool idleConnectionIsDirty() const;
    http::Response perform();
    /// The peer of the last exchange, possibly a proxy; empty when there was none.
    QString peerNote() const;

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
    std::chrono::seconds retryAfter{0};
    std::optional<long> sentBefore; ///< Bytes sent before the request's first try.
    QByteArray answer;
    qint64 received = 0;
    bool headComplete = false;
};
