#pragma once

#include "simulator/faults.h"
#include "simulator/httpserver.h"
#include "simulator/options.h"
#include "simulator/service.h"

#include <QJsonArray>
#include <QString>

#include <memory>
#include <mutex>
#include <optional>

namespace simulator {

/// The loyalty service on loopback, over real HTTP: the operations, the control door under
/// /simulator/ (see docs/simulator.md), and a page that shows both.
///
///     simulator::Simulator simulator;
///     ASSERT_TRUE(simulator.start());
///     settings.insert("LmMindbox:url", simulator.url());
///
/// The state outlives a stop, and a later start listens on the same port. Every method may be
/// called while it serves.
class Simulator
{
public:
    explicit Simulator(Options options = {});
    Q_DISABLE_COPY_MOVE(Simulator)
    ~Simulator() { stop(); }

    /// Starts serving on its own threads. Returns the reason when the port, the state or the
    /// certificate cannot be used.
    [[nodiscard]] State::Done start();
    /// Closes every connection at once, even before its answer, and waits until no request is
    /// served.
    void stop();

    /// 0 before the first start.
    int port() const { return boundPort; }
    /// The operations' address.
    QString url() const;

    /// Like POST /simulator/faults. Returns the mistake in it; empty when it was added.
    [[nodiscard]] QString addFault(const QJsonObject &fault);

    /// The answer of GET /simulator/dump: "customers", "codes" (a phone's last unused one),
    /// "letters" (an address's last one), "orders", "faults" and "requests" (counts by operation).
    QJsonObject dump() const;
    /// The orders in the order of their last change, each with "ids", "mobilePhone", "lines" (with
    /// "status" once changed), "totalPrice", "pointOfContact", "executionDateTimeUtc" when sent,
    /// "processingStatus" and the counts "repetitions", "conflicts" (repetitions with other
    /// content; the first content stays), "statusChanges" and "statusRepetitions".
    QJsonArray orders() const { return dump()["orders"_L1].toArray(); }

private:
    void serve(const Request &request, Connection &connection);
    /// Sends the page the news as they come, until it is closed or the service stops.
    void tellNews(Connection &connection) const;

    /// Answers every request that is no operation.
    Answer control(const Request &request);
    Answer addFaults(const Request &request);
    Answer clearFaults(const Request &request);
    Answer putCustomer(const Request &request);
    Answer removeCustomer(const Request &request);
    Answer findExchanges(const Request &request);
    Answer reset(const Request &request);
    /// Refuses a query that, with these other members, has not this shape.
    static std::optional<Answer> checkQuery(const Request &request, const QString &shape,
                                            QJsonObject more = {});

    /// Answers an operation and notes it in the journal. Turns it away when it comes too fast, and
    /// plays the plan's fault on it.
    void answer(const Request &request, Connection &connection);
    /// Counts a request and waits for its turn unless it is turned away. Returns its fault.
    QJsonObject begin(const QString &operation);
    Answer carryOut(const Request &request, const QString &operation);
    std::optional<Answer> checkEnvelope(const Request &request) const;
    void note(QJsonObject exchange, const Request &request, const Answer &answer);
    /// Sends the answer, as much and as fast as the fault allows.
    void play(const QJsonObject &fault, const Answer &answer, Connection &connection) const;
    /// The text without the key, and cut when it is long.
    QString shown(const QByteArray &text) const;

    const Options options;
    mutable std::mutex mutex; ///< Guards what requests change: the members down to `server`.
    FaultPlan faults;
    State state;
    Service service{options, state};
    QJsonObject requests;
    std::chrono::steady_clock::time_point nextTurn; ///< Of requests that the capacity limits.

    std::unique_ptr<HttpServer> server;
    int boundPort = 0;
};

} // namespace simulator
