#include "simulator/simulator.h"

#include "simulator/wire.h"

#include <QJsonDocument>

#include <chrono>
#include <condition_variable>
#include <limits>
#include <mutex>
#include <utility>

namespace simulator {

using namespace Qt::StringLiterals;

namespace {

constexpr auto host = "127.0.0.1";
constexpr auto operationsPath = "/v3/operations/sync";
constexpr std::size_t maximumBody = 64UL * 1024 * 1024;

/// A thread for every connection: a kept one holds its thread while it is idle, and with a fixed
/// number of them the tills could shut each other, and the control door, out.
class ConnectionThreads : public httplib::TaskQueue
{
    /// Newer versions of the library want to hear whether the task was taken.
    using Taken = decltype(std::declval<httplib::TaskQueue &>().enqueue({}));

public:
    Taken enqueue(std::function<void()> serve) override
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
        return static_cast<Taken>(true);
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

Simulator::Simulator(Options options)
    : options(std::move(options))
    , service(this->options)
    , capacity(this->options.capacity)
{}

Simulator::~Simulator()
{
    stop();
}

bool Simulator::start()
{
    stop();
    error = openAndListen();
    return error.isEmpty();
}

QString Simulator::openAndListen()
{
    if (auto wrong = service.open(); !wrong.isEmpty())
        return wrong;
    stopping = std::stop_source();
    if (!makeServer())
        return u"certificate %1 and private key %2 cannot be used"_s.arg(options.certificateFile,
                                                                         options.privateKeyFile);
    addRoutes();
    const int wanted = boundPort == 0 ? options.port : boundPort;
    int port = wanted;
    if (wanted == 0)
        port = server->bind_to_any_port(host);
    else if (!server->bind_to_port(host, wanted))
        port = -1;
    if (port < 0)
        return u"port %1 cannot be listened on"_s.arg(wanted);
    // The library lets five tills wait to be connected and has the others cut off.
    ::listen(listeningSocket, SOMAXCONN);
    boundPort = port;
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

bool Simulator::makeServer()
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
    server->set_socket_options([this](int socket) {
        const int on = 1;
        setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof(on));
        listeningSocket = socket;
    });
    return server->is_valid();
}

void Simulator::stop()
{
    if (!listener.joinable())
        return;
    stopping.request_stop();
    server->stop();
    // Again and again: a connection accepted just now may not have been among the descriptors.
    while (listening) {
        shutConnections(boundPort);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    listener.join();
    server.reset();
}

QString Simulator::url() const
{
    const auto scheme = options.certificateFile.isEmpty() ? u"http"_s : u"https"_s;
    return u"%1://%2:%3%4"_s.arg(scheme, QLatin1String(host))
        .arg(boundPort)
        .arg(QLatin1String(operationsPath));
}

QJsonObject Simulator::dump() const
{
    auto result = service.dump();
    result.insert("faults"_L1, faults.toJson());
    const auto counts = log.counts();
    for (auto count = counts.begin(); count != counts.end(); ++count)
        result.insert(count.key(), *count);
    return result;
}

void Simulator::addRoutes()
{
    server->Post(operationsPath,
                 [this](const auto &request, auto &response) { answer(request, response); });
    addPage(*server, [this](Told &told) { return news(told); }, stopping.get_token());
    server->Get("/simulator/dump", [this](const auto & /*request*/, auto &response) {
        send({.body = dump()}, response);
    });
    addChanges();
    server->set_error_handler([](const httplib::Request &request, httplib::Response &response) {
        const bool isOperation = request.path == operationsPath;
        // Faults answer so, too.
        if (response.status != 404 || !response.body.empty() ||
            (isOperation && request.method == "POST"))
            return;
        send(isOperation ? protocolError(405, u"Only POST is served here"_s)
                         : protocolError(404, u"Nothing is served at this path"_s),
             response);
    });
}

void Simulator::addChanges()
{
    // A request is refused after its body was read: what is left of one would be the next request.
    const auto own = [this](auto change) {
        return [this, change](const httplib::Request &request, httplib::Response &response) {
            if (isFromOwnPage(request, !options.certificateFile.isEmpty()))
                send(change(request), response);
            else
                refuse(response);
        };
    };
    server->Post("/simulator/faults", own([this](const auto &request) {
                     const auto document = QJsonDocument::fromJson(bytes(request.body));
                     const auto wrong = document.isObject() ? faults.addJson(document.object())
                                                            : u"the body is no JSON object"_s;
                     return wrong.isEmpty() ? success() : protocolError(400, wrong);
                 }));
    server->Delete("/simulator/faults", own([this](const auto &request) {
                       faults.clear(QString::fromStdString(request.get_param_value("kind")));
                       return success();
                   }));
    const auto forget = own([this](const auto & /*request*/) {
        reset();
        return success();
    });
    server->Post("/simulator/reset", forget);
    server->set_pre_routing_handler([forget](const auto &request, auto &response) {
        const bool isReading = request.method == "GET" || request.method == "HEAD";
        const bool hasBody =
            request.has_header("Content-Length") || request.has_header("Transfer-Encoding");
        if (isReading && request.path != operationsPath && !isForThisMachine(request))
            refuse(response);
        // The library waits for a body that nobody has announced, as "curl -X POST" does not.
        else if (request.method == "POST" && request.path == "/simulator/reset" && !hasBody)
            forget(request, response);
        else
            return httplib::Server::HandlerResponse::Unhandled;
        return httplib::Server::HandlerResponse::Handled;
    });
}

QJsonObject Simulator::news(Told &told) const
{
    const int now = resets;
    const bool isNew = told.resets != now;
    if (isNew)
        told = {.resets = now};
    auto news = service.since(told.change);
    if (isNew)
        news.insert("reset"_L1, true);
    if (const auto plan = faults.toJson(); plan != std::exchange(told.faults, plan))
        news.insert("faults"_L1, plan);
    if (const auto exchanges = log.since(told.exchange); !exchanges.isEmpty())
        news.insert("exchanges"_L1, exchanges);
    return news;
}

void Simulator::reset()
{
    service.reset();
    faults.reset();
    log.reset();
    ++resets;
}

} // namespace simulator
