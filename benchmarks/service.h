#pragma once

#include <QByteArray>
#include <QHash>
#include <QNetworkAccessManager>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

#include <functional>

using namespace Qt::StringLiterals;

namespace lmmindbox {
class Interface;
} // namespace lmmindbox

namespace bench {

/// A customer with phone, e-mail address and name on record.
inline const auto confirmedPhone = u"79160000001"_s;

/// The request of a client's operation.
struct SentRequest
{
    QByteArray url;
    QByteArray body;
    QHash<QString, QString> headers{};
};

/// Captures an operation's request instead of sending it.
SentRequest record(const std::function<void(lmmindbox::Interface &)> &operation);

/// The baseline of every exchange, the usual Qt way: a request through the network access manager,
/// and an event loop until it ends.
class UsualExchange
{
public:
    /// Posts a request; gets a page when the body is empty.
    QByteArray answerTo(const SentRequest &request);
    /// \return Whether the service accepted the request.
    bool post(const SentRequest &request)
    {
        return answerTo(request).contains(R"("status":"Success")");
    }

private:
    QNetworkAccessManager manager;
};

/// The simulator in its own process, settings with its address, a till's log, and a directory on
/// the disk under test.
class Service
{
public:
    Service();
    ~Service();
    Q_DISABLE_COPY_MOVE(Service)

    /// Whether the simulator answers.
    bool isThere() const { return !url.isEmpty(); }
    QString newFile() const;
    /// Writes a new settings file for a till.
    QString newSettingsFile() const;
    /// The number of orders at the simulator whose lines have their status.
    int countSettledOrders() const;
    /// Resets the simulator.
    void reset() const;
    /// Points the clients to the service, or to a port where nothing listens.
    void setReachable(bool isReachable) const;

private:
    QTemporaryDir directory;
    QProcess simulator;
    QByteArray url;
};

} // namespace bench
