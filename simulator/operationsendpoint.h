#pragma once

#include "simulator/faults.h"
#include "simulator/receivedrequest.h"
#include "simulator/service.h"

#include <QMap>

#include <condition_variable>
#include <mutex>

namespace httplib {
struct Request;
struct Response;
} // namespace httplib

namespace simulator {

/// Where operations arrive: counts them, plays the plan's faults on them, has them answered.
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
    void play(const Fault &fault, const ReceivedRequest &received, const httplib::Request &request,
              httplib::Response &response);
    void sendFaulty(const Fault &fault, const Answer &answer, httplib::Response &response);
    void count(const ReceivedRequest &received);
    /// With verbose on; `answer` is null when the operation was not done.
    void print(const ReceivedRequest &received, const Answer *answer) const;
    void pause(int milliseconds);

    Service &service;
    FaultPlan &faults;
    const Options &options;

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
