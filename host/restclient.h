#pragma once

#include "host/export.h"
#include "host/httpresponse.h"
#include "host/mockfactory.h"

#include <QHash>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>

class QJsonDocument;
class QUrl;

namespace Log4Qt {
class Logger;
}

/// Sends JSON over HTTP and waits for the answer.
///
/// One exchange at a time; the connection is kept for the next one. Redirects are not followed,
/// certificates and host names are verified, only http and https are spoken, and an answer of more
/// than `maximumAnswerSize` bytes counts as no answer. A certificate authority of the shop's own
/// is trusted when the setting "Http:caFile" names its PEM file. The proxy is the one that the
/// setting "Http:proxy" or else the environment names; loopback is spoken to without one.
///
/// A service that does not answer is waited for once: for a time after that, what a sale sends to
/// it is given up at once, in all clients of the process (see ServiceAvailability).
class HOST_EXPORT RestClient
{
public:
    static constexpr qint64 maximumAnswerSize = 16LL << 20;
    /// Transport code of a request that was not sent, because the service did not answer before.
    static constexpr int notSent = 1000;

    /// Who waits for the answer.
    enum class Purpose {
        Sale,     ///< The cashier.
        Delivery, ///< Nobody. It keeps a slower pace of its own, so it is always sent.
    };

    RestClient();
    virtual ~RestClient();
    Q_DISABLE_COPY_MOVE(RestClient)

    /// Bounds a whole exchange, from resolving the name to the last byte. Values below 1 ms mean
    /// 1 ms; there is no endless wait. 5,000 ms until set.
    virtual void setTimeout(qint64 milliseconds);
    /// Where exchanges are logged; null for nowhere. The logger must outlive the client.
    virtual void setLogger(const Log4Qt::Logger *newLogger) { logger = newLogger; }
    /// Each exchange is logged in one line at info level, a failure as a warning; without compact
    /// logs both bodies as well, at debug level, never the headers.
    virtual void setCompactLogs(bool compact) { compactLogs = compact; }

    /// Posts the document with the headers; the outcome is in `getResponse`. A header whose name
    /// or value holds a line break or a null character, or a URL that is neither http nor https,
    /// is not sent and leaves a response with HTTP code 0.
    virtual void send(const QUrl &url, const QJsonDocument &document,
                      const QHash<QString, QString> &headers);
    /// The outcome of the last `send`; HTTP code 0 and no body before the first one.
    virtual http::Response getResponse() const { return response; }

    /// The outcome of the last `send` of any client in this thread, for who was not at the call.
    static http::Response lastResponse();

    /// Says what the exchanges of this thread are for from now on; `Sale` until then.
    static void setPurpose(Purpose purpose);

    /// A request that has ended, or was not sent (`notSent`).
    struct Exchange
    {
        const QUrl &url;
        const http::Response &response;
        std::chrono::microseconds duration;
    };
    /// Who is told of every exchange of the process, in the exchange's thread; empty for nobody.
    /// To be set while no other thread has a client.
    static void setObserver(std::function<void(const Exchange &)> observer);

    /// What a response's transport code says, in English words.
    static QString transportErrorText(int transportCode);

private:
    class Connection;
    std::unique_ptr<Connection> connection;
    const Log4Qt::Logger *logger = nullptr;
    bool compactLogs = true;
    qint64 timeout = 5000;
    http::Response response;
};

extern template class HOST_EXPORT MockFactory<RestClient>;
