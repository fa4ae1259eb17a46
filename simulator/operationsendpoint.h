#pragma once

#include "simulator/capacity.h"
#include "simulator/faults.h"
#include "simulator/receivedrequest.h"
#include "simulator/service.h"

#include <QMap>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>

namespace httplib {
struct Request;
struct Response;
} // namespace httplib

namespace simulator {

/// Where operations arrive: counts them, turns away those that come too fast, plays the plan's
/// faults on the others and has them answered.
class OperationsEndpoint
{
public:
    /// Everything passed must outlive the endpoint.
    OperationsEndpoint(Service &service, FaultPlan &faults, const Options &options);

    /// Called by a thread of the connection's own.
    void answer(const httplib::Request &request, httplib::Response &response);
    /// While on, delays and slow answers do not wait.
    void setInterrupted(bool on);

    /// Members "requests" (by operation) and "connections" (those that carried operations).
    QJsonObject counts() const;
    ReceivedRequest lastRequest() const;
    void reset();

private:
    /// Has the operation done, or pretends to, and prints it with verbose on.
    Answer carryOut(const ReceivedRequest &received, bool isDone = true);
    /// What befalls the request that came now, when its turn has come or it was turned away.
    std::optional<Fault> nextFault(const QString &operation);
    void play(const Fault &fault, const ReceivedRequest &received, const httplib::Request &request,
              httplib::Response &response);
    void sendFaulty(const Fault &fault, const Answer &answer, httplib::Response &response);
    void count(const ReceivedRequest &received);
    void print(const QString &text) const;
    void pause(std::chrono::nanoseconds time);

    Service &service;
    FaultPlan &faults;
    const Options &options;
    Capacity capacity;

    std::mutex waitMutex;
    std::condition_variable waitEnded;
    bool interrupted = false;

    mutable std::mutex mutex;
    QMap<QString, int> requests;
    int connections = 0;
    quint64 counting = 1; ///< Number of the count that a reset began.
    ReceivedRequest last;
};

} // namespace simulator
