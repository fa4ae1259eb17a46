#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QJsonObject>
#include <QLatin1String>
#include <QString>
#include <QUrl>

namespace Log4Qt {
class Logger;
}

namespace http {
class Response;
}

/// Writes one exchange to the log: one line of what it was about and how it ended, as a warning
/// when there was no answer, else at info level; both bodies at debug level.
///
/// Headers are never written. The secret key and the codes that customers confirm with are written
/// as "***" wherever they stand.
class ExchangeLog
{
public:
    struct Request
    {
        QLatin1String purpose;
        QUrl url;
        QJsonObject object;
    };

    /// \param logger Null for no log.
    /// \param compact Whether the bodies are left out.
    ExchangeLog(const Log4Qt::Logger *logger, bool compact, Request request);

    /// Before it is sent, as that body; only the body is written, so nothing without details.
    void writeRequest(const QByteArray &sentBody);
    /// \param note What follows the line of an answer whose code is not 200.
    void writeAnswer(const http::Response &response, const QString &note) const;
    /// Nothing complete came back, for a reason in English words.
    void writeFailure(const QString &reason, int transportCode) const;

private:
    QString subject() const;
    QString address() const;
    QString harmless(QString text) const;

    const Log4Qt::Logger *logger;
    bool detailed;
    Request request;
    QByteArray body;
    QElapsedTimer duration;
};
