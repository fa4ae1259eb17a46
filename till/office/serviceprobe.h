#pragma once

#include <QDateTime>
#include <QList>
#include <QString>

#include <chrono>
#include <optional>

class QUrl;

namespace till {

/// A certificate as a service showed it.
struct ShownCertificate
{
    QString subject;
    QString issuer;
    QDateTime expires; ///< UTC.
};

/// What can be learnt of a service without asking it for an operation, and without the key.
struct ServiceProbe
{
    enum class Failure {
        None,
        Name,        ///< Cannot be resolved.
        Connection,  ///< Refused, or without an answer.
        Tls,         ///< There is no TLS at that port, or none that is good enough.
        Authorities, ///< The file of the authorities that are trusted cannot be read.
        Certificate, ///< Expired, for another host or of an unknown authority.
        Silent,      ///< Connected, and no answer in time.
        Answer,      ///< Connected, and what comes is not HTTP.
    };

    Failure failure = Failure::None;
    QString reason;  ///< Of the failure, in the transport's words.
    QString address; ///< Numeric, of the service or of the proxy; empty without a connection.
    std::chrono::milliseconds connectTime{0};
    QList<ShownCertificate> chain; ///< The service's own first; shown by a bad one as well.
    bool isOfOtherHost = false;    ///< The bad certificate is good for another host.
    /// How far this machine's clock is ahead of the service's; nothing when it did not tell.
    std::optional<std::chrono::seconds> clockAhead;
};

/// Connects with the till's own settings for authority and proxy, and asks for the page at the URL.
ServiceProbe probeService(const QUrl &url, std::chrono::milliseconds timeout);

} // namespace till
