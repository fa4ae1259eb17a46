#pragma once

#include "simulator/exchangelog.h"
#include "simulator/faults.h"
#include "simulator/operationsendpoint.h"
#include "simulator/options.h"
#include "simulator/page.h"
#include "simulator/service.h"

#include <QJsonArray>
#include <QString>

#include <atomic>
#include <memory>
#include <thread>

namespace httplib {
class Server;
} // namespace httplib

namespace simulator {

/// The loyalty service on loopback, over real HTTP: the operations, the control door under
/// /simulator/ for faults, the dump and the reset, and a page that shows it.
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
    /// port, the state or the certificate cannot be used.
    [[nodiscard]] bool start();
    /// Closes every connection at once, waiting answers included, and waits until no request is
    /// served.
    void stop();
    QString errorString() const { return error; }

    /// 0 before the first start.
    int port() const { return boundPort; }
    /// Address of the operations.
    QString url() const;

    void addFault(const Fault &fault) { faults.add(fault); }

    /// What GET /simulator/dump answers: "customers", "codes" (the unused one last sent to a
    /// phone), "letters", "orders", "faults" and the counts "requests" (by operation) and
    /// "connections".
    QJsonObject dump() const;
    /// As they came, each with "ids", "mobilePhone", "lines" (with "status" once changed),
    /// "totalPrice", "pointOfContact", "executionDateTimeUtc" when sent, "processingStatus" and
    /// the counts "repetitions", "conflicts" (repetitions whose content differed; the first one
    /// stands), "statusChanges" and "statusRepetitions".
    QJsonArray orders() const { return dump()[QLatin1String("orders")].toArray(); }
    /// The last operation request as it came off the wire, dropped ones included.
    ReceivedRequest lastRequest() const { return log.lastRequest(); }

private:
    QString openAndListen();
    bool makeServer();
    void addRoutes();
    void addChanges();
    QJsonObject news(Told &told) const;
    void reset();

    const Options options;
    FaultPlan faults;
    Service service;
    ExchangeLog log;
    Pauses pauses;
    OperationsEndpoint endpoint;
    std::atomic<int> resets = 0;
    bool isOpen = false;
    QString error;

    std::unique_ptr<httplib::Server> server;
    std::thread listener;
    std::atomic<bool> listening = false;
    int listeningSocket = -1;
    int boundPort = 0;
};

} // namespace simulator
