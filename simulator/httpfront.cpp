#include "simulator/httpfront.h"

#include "simulator/connections.h"
#include "simulator/wire.h"

#include <QJsonDocument>

#include <chrono>
#include <condition_variable>
#include <limits>
#include <mutex>
#include <utility>

namespace simulator {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr auto host = "127.0.0.1";
constexpr auto operationsPath = "/v3/operations/sync";
constexpr std::size_t maximumBody = 64UL * 1024 * 1024;

/// Nothing or, with newer libraries, whether the work was taken.
using Enqueued = decltype(std::declval<httplib::TaskQueue &>().enqueue({}));

/// A thread for every connection: a kept one holds its thread while it is idle, and with a fixed
/// number of them the tills could shut each other, and the control door, out.
class ConnectionThreads : public httplib::TaskQueue
{
public:
    Enqueued enqueue(std::function<void()> serve) override
    {
        {
            const std::lock_guard lock(mutex);
            ++running;
        }
        std::thread([this, serve = std::move(serve)] {
            serve();
            const std::lock_guard lock(mutex);
            --running;
            // Under the lock: after it the queue may be gone.
            ended.notify_all();
        }).detach();
        return Enqueued(true);
    }

    void shutdown() override
    {
        std::unique_lock lock(mutex);
        ended.wait(lock, [this] { return running == 0; });
    }

private:
    std::mutex mutex;
    std::condition_variable ended;
    int running = 0;
};

} // namespace

HttpFront::HttpFront(Service &service, FaultPlan &faults, const Options &options)
    : service(service)
    , faults(faults)
    , options(options)
    , endpoint(service, faults, options)
{}

HttpFront::~HttpFront()
{
    stop();
}

QString HttpFront::start(int wantedPort)
{
    if (!makeServer())
        return QStringLiteral("certificate %1 and private key %2 cannot be used")
            .arg(options.certificateFile, options.privateKeyFile);
    addRoutes();

    const int port = wantedPort == 0                          ? server->bind_to_any_port(host)
                     : server->bind_to_port(host, wantedPort) ? wantedPort
                                                              : -1;
    if (port < 0)
        return QStringLiteral("port %1 cannot be listened on").arg(wantedPort);
    boundPort = port;
    endpoint.setInterrupted(false);
    listening = true;
    listener = std::thread([this] {
        server->listen_after_bind();
        listening = false;
    });
    // A stop before the library's loop has begun would go unheard.
    while (listening && !server->is_running())
        std::this_thread::yield();
    return {};
}

bool HttpFront::makeServer()
{
    const auto certificate = options.certificateFile.toStdString();
    const auto privateKey = options.privateKeyFile.toStdString();
    if (certificate.empty() && privateKey.empty())
        server = std::make_unique<httplib::Server>();
    else
        server = std::make_unique<httplib::SSLServer>(certificate.c_str(), privateKey.c_str());
    server->new_task_queue = [] { return new ConnectionThreads; };
    server->set_keep_alive_max_count(std::numeric_limits<std::size_t>::max());
    server->set_keep_alive_timeout(options.keepAlive.count());
    server->set_payload_max_length(maximumBody);
    server->set_tcp_nodelay(true);
    // The library would also share the port, so that a second simulator took half of the calls.
    server->set_socket_options([](int socket) {
        const int on = 1;
        setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof(on));
    });
    return server->is_valid();
}

void HttpFront::stop()
{
    if (!listener.joinable())
        return;
    endpoint.setInterrupted(true);
    server->stop();
    // Again and again: a connection accepted just now may not have been among the descriptors.
    while (listening) {
        shutConnections(boundPort);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    listener.join();
    server.reset();
}

int HttpFront::port() const
{
    return boundPort;
}

QJsonObject HttpFront::dump() const
{
    auto result = service.dump();
    result.insert("faults"_L1, faults.toJson());
    const auto counts = endpoint.counts();
    for (auto count = counts.begin(); count != counts.end(); ++count)
        result.insert(count.key(), *count);
    return result;
}

ReceivedRequest HttpFront::lastRequest() const
{
    return endpoint.lastRequest();
}

void HttpFront::reset()
{
    service.reset();
    faults.reset();
    endpoint.reset();
}

void HttpFront::addRoutes()
{
    server->Post(operationsPath, [this](const auto &request, auto &response) {
        endpoint.answer(request, response);
    });
    const auto refuse = [](const httplib::Request &request, httplib::Response &response) {
        if (request.path == operationsPath)
            send(protocolError(405, QStringLiteral("Only POST is served here")), response);
        else
            send(protocolError(404, QStringLiteral("Nothing is served at this path")), response);
    };
    constexpr auto everything = ".*";
    // Routes are tried in the order they were added.
    server->Put(everything, refuse);
    server->Patch(everything, refuse);
    server->Options(everything, refuse);
    server->Get("/simulator/dump", [this](const auto &, auto &response) {
        send({.httpCode = 200, .body = dump()}, response);
    });
    server->Get(everything, refuse);
    server->Post("/simulator/faults",
                 [this](const auto &request, auto &response) { takeFaults(request, response); });
    server->Post("/simulator/reset", [this](const auto &, auto &response) {
        reset();
        send(success(), response);
    });
    server->Post(everything, refuse);
    server->Delete("/simulator/faults", [this](const auto &, auto &response) {
        faults.clear();
        send(success(), response);
    });
    server->Delete(everything, refuse);
}

void HttpFront::takeFaults(const httplib::Request &request, httplib::Response &response)
{
    const auto document = QJsonDocument::fromJson(bytes(request.body));
    const auto wrong = document.isObject() ? faults.addJson(document.object())
                                           : QStringLiteral("the body is no JSON object");
    send(wrong.isEmpty() ? success() : protocolError(400, wrong), response);
}

} // namespace simulator
