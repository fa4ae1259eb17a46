#pragma once

#include <QByteArray>
#include <QHash>
#include <QtGlobal>

#include <curl/curl.h>

#include <chrono>
#include <functional>
#include <string>

namespace lmmindbox {
class Interface;
} // namespace lmmindbox

namespace bench {

/// What an operation of the service client sends.
struct SentRequest
{
    QByteArray url;
    QByteArray body;
    QHash<QString, QString> headers{};
};

/// Has an operation write its request here instead of sending it.
SentRequest record(const std::function<void(lmmindbox::Interface &)> &operation);

/// The floor of every exchange: one reused libcurl handle that posts given bytes with the client's
/// headers and reads the answer, and does nothing else.
class BareExchange
{
public:
    BareExchange();
    ~BareExchange();
    Q_DISABLE_COPY_MOVE(BareExchange)

    /// How long an exchange may take; by itself for ever.
    void setTimeout(std::chrono::milliseconds time);
    /// \return Whether the answer came with HTTP code 200 and the service took the request.
    bool post(const SentRequest &request);
    /// Fetches a page, such as the simulator's dump; empty when it cannot.
    QByteArray get(const QByteArray &url);

private:
    bool perform();

    CURL *handle;
    curl_slist *headers = nullptr;
    std::string answer;
};

} // namespace bench
