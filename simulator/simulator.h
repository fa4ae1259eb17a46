#pragma once

#include "simulator/capacity.h"
#include "simulator/exchangelog.h"
#include "simulator/faults.h"
#include "simulator/options.h"
#include "simulator/page.h"
#include "simulator/service.h"

#include <QJsonArray>
#include <QString>
#include <QUrlQuery>

#include <atomic>
#include <memory>
#include <stop_token>
#include <thread>

namespace httplib {
class Server;
struct Request;
struct Response;
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

private:
    QString openAndListen();
    bool makeServer();
    void addRoutes();
    void addChanges();
    QJsonObject news(Told &told) const;
    void reset();

    /// Turns away an operation that comes too fast, plays the plan's fault on another, has it
    /// answered and logs it. Called by a thread of the connection's own.
    void answer(const httplib::Request &request, httplib::Response &response);
    /// What befalls the request that came now, when its turn has come or it was turned away.
    Fault nextFault(const QString &operation, const std::stop_token &stop);
    Answer carryOut(const httplib::Request &request, const QUrlQuery &query,
                    const QString &operation);
    void print(const QString &operation, const Fault &fault, const QByteArray &sent,
               const Answer &answer) const;

    const Options options;
    FaultPlan faults;
    Service service;
    ExchangeLog log;
    Capacity capacity;
    std::atomic<int> resets = 0;
    QString error;

    std::unique_ptr<httplib::Server> server;
    std::stop_source stopping;
    std::thread listener;
    std::atomic<bool> listening = false;
    int listeningSocket = -1;
    int boundPort = 0;
};

} // namespace simulator
