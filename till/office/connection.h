#pragma once

#include <QDateTime>
#include <QString>

#include <array>
#include <curl/curl.h>
#include <memory>
#include <optional>

class QUrl;

namespace till {

/// A request to a service, without an operation or the secret key.
class Connection
{
public:
    struct Certificate
    {
        QString subject;
        QString issuer;
        QDateTime expires; ///< UTC.
    };

    /// Takes authority, proxy and time-out from the settings.
    explicit Connection(const QUrl &url);

    /// \return Its `code`.
    CURLcode open() { return result = curl_easy_perform(handle.get()); }

    CURLcode code() const { return result; }
    /// The result in libcurl's words.
    QString words() const;
    /// What libcurl knows about the request; a time is 0 when it was not reached.
    template<typename T>
    T info(CURLINFO what) const
    {
        T value{};
        curl_easy_getinfo(handle.get(), what, &value);
        return value;
    }
    bool isConnected() const { return info<curl_off_t>(CURLINFO_CONNECT_TIME_T) > 0; }
    bool isProxyLoginWanted() const;
    /// The certificate of the service's chain that expires first; nothing without TLS.
    std::optional<Certificate> certificate() const;
    /// By how many seconds this machine's clock is ahead of the service's; nothing when the answer
    /// has no date.
    std::optional<qint64> clockAhead() const;

    /// The proxy's address, as configured; empty for none. Ignores "no_proxy".
    const QString &proxy() const { return proxyAddress; }
    /// The setting or environment variable that names the proxy.
    const QString &proxySource() const { return source; }

private:
    void findProxy(const QUrl &url);

    std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> handle{curl_easy_init(),
                                                               &curl_easy_cleanup};
    std::array<char, CURL_ERROR_SIZE> errorText{};
    CURLcode result = CURLE_OK;
    QString proxyAddress;
    QString source;
};

} // namespace till
