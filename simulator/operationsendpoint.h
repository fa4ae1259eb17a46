#pragma once

#include "simulator/capacity.h"
#include "simulator/exchangelog.h"
#include "simulator/faults.h"
#include "simulator/pauses.h"
#include "simulator/service.h"

#include <optional>

namespace httplib {
struct Request;
struct Response;
} // namespace httplib

namespace simulator {

/// Where operations arrive: turns away those that come too fast, plays the plan's faults on the
/// others, has them answered and logs them.
class OperationsEndpoint
{
public:
    /// Everything passed must outlive the endpoint.
    OperationsEndpoint(Service &service, FaultPlan &faults, ExchangeLog &log, Pauses &pauses,
                       const Options &options);

    /// Called by a thread of the connection's own.
    void answer(const httplib::Request &request, httplib::Response &response);

private:
    /// What befalls the request that came now, when its turn has come or it was turned away.
    std::optional<Fault> nextFault(const QString &operation);
    /// Has the operation done, or pretends to, with the waits of the fault.
    Answer carryOut(const ReceivedRequest &received, const std::optional<Fault> &fault);
    void sendFaulty(const Fault &fault, const Answer &answer, const httplib::Request &request,
                    httplib::Response &response);
    void print(const Exchange &exchange) const;

    Service &service;
    FaultPlan &faults;
    ExchangeLog &log;
    Pauses &pauses;
    const Options &options;
    Capacity capacity;
};

} // namespace simulator
