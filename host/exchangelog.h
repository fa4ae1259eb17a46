#pragma once

#include <QElapsedTimer>
#include <QHash>
#include <QJsonDocument>
#include <QString>
#include <QUrl>

namespace Log4Qt {
class Logger;
}

namespace http {
class Response;
}

/// Writes one exchange to the log: each side at debug level, a failure as a warning.
///
/// Headers are never written. What a header holds between quotes is a secret, and so are the codes
/// that customers confirm with; wherever they stand in a body, "***" is written instead.
class ExchangeLog
{
public:
    /// \param logger Null for no log.
    /// \param compact Whether only a failure is written.
    ExchangeLog(const Log4Qt::Logger *logger, bool compact, const QUrl &url,
                const QHash<QString, QString> &headers);

    void writeRequest(const QJsonDocument &document) const;
    void writeAnswer(const http::Response &response) const;
    void writeFailure(const QString &reason, int transportCode) const;

private:
    QString printableUrl() const;
    QString printableBody(const QJsonDocument &document) const;

    const Log4Qt::Logger *logger;
    bool detailed;
    const QUrl &url;
    QStringList secrets;
    QElapsedTimer duration;
};
