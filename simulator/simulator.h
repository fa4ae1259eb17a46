#pragma once

#include "simulator/faults.h"
#include "simulator/options.h"
#include "simulator/receivedrequest.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

#include <memory>

namespace simulator {

class HttpFront;
class Service;

/// The loyalty service on loopback, over real HTTP.
///
///     simulator::Simulator simulator;
///     ASSERT_TRUE(simulator.start()) << qPrintable(simulator.errorString());
///     settings.insert("LmMindbox:url", simulator.url());
///
/// What it holds outlives a stop; a later start listens on the same port. Every operation may be
/// called while it serves.
class Simulator
{
public:
    explicit Simulator(Options options = {});
    ~Simulator(); ///< Stops.
    Q_DISABLE_COPY_MOVE(Simulator)

    /// Serves on threads of its own from now on. Returns false with `errorString` set when the
    /// port, the journal or the certificate cannot be used.
    [[nodiscard]] bool start();
    /// Closes every connection at once and waits until no request is served.
    void stop();
    QString errorString() const;

    /// 0 before the first start.
    int port() const;
    /// Address of the operations, with the host name that a certificate may ask for.
    QString url(const QString &host = QStringLiteral("127.0.0.1")) const;

    void addFault(const Fault &fault);

    /// The unused code last sent to the phone, in any spelling; empty when there is none.
    QString lastCode(const QString &phone) const;
    /// Each with "ids", "mobilePhone", "lines" (with "status" once changed), "totalPrice",
    /// "pointOfContact", "executionDateTimeUtc" when sent, "processingStatus" and the counts
    /// "repetitions", "conflicts", "statusChanges" and "statusRepetitions".
    QJsonArray orders() const;
    /// Members "customers", "codes", "letters", "orders", "requests" (counts by operation),
    /// "connections" (TCP connections that carried operations) and "faults".
    QJsonObject dump() const;
    /// The last operation request as it came off the wire, dropped ones included.
    ReceivedRequest lastRequest() const;

private:
    const Options options;
    FaultPlan faults;
    std::unique_ptr<Service> service;
    std::unique_ptr<HttpFront> front;
    bool opened = false;
    QString error;
};

} // namespace simulator
