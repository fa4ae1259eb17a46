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
/// It runs one exchange at a time and keeps the connection for the next one. It speaks http and
/// https, verifies certificates and host names, and follows no redirects. An answer of more than
/// `maximumAnswerSize` bytes counts as no answer. The setting "Http:caFile" names the PEM file of a
/// shop's own certificate authority. The proxy comes from the setting "Http:proxy", else from the
/// environment; loopback never uses one.
///
/// After a service has failed to answer, sales skip it for a while: their requests fail at once, in
/// all clients of the process (see ServiceAvailability).
class HOST_EXPORT RestClient
{
public:
    static constexpr qint64 maximumAnswerSize = 16LL << 20;
    /// Transport code of a request that was skipped because the service did not answer earlier.
    static constexpr int notSent = 1000;

    /// Who waits for the answer.
    enum class Purpose {
        Sale,     ///< The cashier.
        Delivery, ///< Nobody. The delivery limits its own pace, so its requests are never skipped.
    };

    RestClient();
    virtual ~RestClient();
    Q_DISABLE_COPY_MOVE(RestClient)

    /// Limits the whole exchange, from resolving the name to the last byte. Values below 1 ms mean
    /// 1 ms; there is no endless wait. 5,000 ms until set.
    virtual void setTimeout(qint64 milliseconds);
    /// The logger for exchanges; null disables the log. It must outlive the client.
    virtual void setLogger(const Log4Qt::Logger *newLogger) { logger = newLogger; }
    /// Whether the bodies are left out of the log. Each exchange gets one line at info level, a
    /// failure a warning. Otherwise both bodies follow at debug level; headers are never logged.
    virtual void setCompactLogs(bool compact) { compactLogs = compact; }

    /// Posts the document with the headers; `getResponse` has the outcome. The request is not sent,
    /// and the response has HTTP code 0, when a header holds a line break or a null character or
    /// the URL is neither http nor https.
    virtual void send(const QUrl &url, const QJsonDocument &document,
                      const QHash<QString, QString> &headers);
    /// The outcome of the last `send`; HTTP code 0 and no body before the first one.
    virtual http::Response getResponse() const { return response; }

    /// Sets the purpose of this thread's exchanges; `Sale` until set.
    static void setPurpose(Purpose purpose);

    /// A request that has ended or was skipped (`notSent`).
    struct Exchange
    {
        const QUrl &url;
        const http::Response &response;
        std::chrono::microseconds duration;
    };
    /// The observer of every exchange of the process, called in the exchange's thread; empty for
    /// none. Set it while no other thread has a client.
    static void setObserver(std::function<void(const Exchange &)> observer);

    /// The meaning of a response's transport code, in English words.
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
