#pragma once

#include "simulator/operationsendpoint.h"

#include <atomic>
#include <memory>
#include <thread>

namespace httplib {
class Server;
struct Request;
struct Response;
} // namespace httplib

namespace simulator {

/// The service's address on loopback: the operations endpoint, and the control door under
/// /simulator/ for faults, the dump and the reset.
class HttpFront
{
public:
    HttpFront(Service &service, FaultPlan &faults, const Options &options);
    ~HttpFront();
    Q_DISABLE_COPY_MOVE(HttpFront)

    /// Listens on 127.0.0.1. Returns what went wrong, empty when it listens.
    [[nodiscard]] QString start(int wantedPort);
    /// Closes every connection at once, waiting answers included.
    void stop();
    /// 0 before the first start; stays after a stop.
    int port() const;

    /// What `GET /simulator/dump` answers.
    QJsonObject dump() const;
    ReceivedRequest lastRequest() const;

private:
    bool makeServer();
    void addRoutes();
    void reset();
    void takeFaults(const httplib::Request &request, httplib::Response &response);

    Service &service;
    FaultPlan &faults;
    const Options &options;
    OperationsEndpoint endpoint;

    std::unique_ptr<httplib::Server> server;
    std::thread listener;
    std::atomic<bool> listening = false;
    int boundPort = 0;
};

} // namespace simulator
