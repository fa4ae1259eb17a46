#include "simulator/simulator.h"

#include <QJsonDocument>

#include <utility>

namespace simulator {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto operationsPath = "/v3/operations/sync"_L1;

} // namespace

Simulator::Simulator(Options options)
    : options(std::move(options))
{}

State::Done Simulator::start()
{
    stop();
    server = std::make_unique<HttpServer>(
        [this](const auto &request, auto &connection) { serve(request, connection); },
        options.keepAlive);
    if (auto opened = state.open(options.stateFile); !opened)
        return opened;
    const auto &certificate = options.certificateFile;
    if (!certificate.isEmpty() && !server->useCertificate(certificate, options.privateKeyFile))
        return tl::unexpected(u"certificate %1 and private key %2 cannot be used"_s.arg(
            certificate, options.privateKeyFile));
    const int wanted = boundPort == 0 ? options.port : boundPort;
    const int port = server->listen(wanted);
    if (port == 0)
        return tl::unexpected(u"port %1 cannot be listened on"_s.arg(wanted));
    boundPort = port;
    return {};
}

void Simulator::stop()
{
    if (server)
        server->stop();
}

QString Simulator::url() const
{
    const auto scheme = options.certificateFile.isEmpty() ? "http"_L1 : "https"_L1;
    return scheme + u"://127.0.0.1:%1"_s.arg(boundPort) + operationsPath;
}

void Simulator::serve(const Request &request, Connection &connection)
{
    if (request.method == "POST"_L1 && request.path == operationsPath) {
        answer(request, connection);
        return;
    }
    const auto answer = request.path == operationsPath
                            ? protocolError(405, u"Only POST is served here"_s)
                            : control(request);
    if (answer.httpCode == 200 && request.path == "/simulator/events"_L1)
        tellNews(connection);
    else
        connection.send(answer.head() + answer.rest());
}

void Simulator::tellNews(Connection &connection) const
{
    constexpr auto timeBetweenLooks = 100ms;
    // A page considers the connection lost after a longer silence.
    constexpr int looksBetweenSigns = 20;
    connection.end();
    bool goesOn = connection.send("HTTP/1.1 200 \r\nContent-Type: text/event-stream\r\n"
                                  "Cache-Control: no-store\r\n\r\n");
    qint64 change = -1;
    QJsonObject toldPlan;
    // Polls, so that a busy service does not flood its pages.
    for (int looks = 0; goesOn; ++looks) {
        std::unique_lock lock(mutex);
        auto news = state.since(change);
        const auto plan = faults.toJson();
        lock.unlock();
        if (std::exchange(toldPlan, plan) != plan)
            news.insert("faults"_L1, plan);
        const auto event = "data: " + QJsonDocument(news).toJson(QJsonDocument::Compact) + "\n\n";
        const bool isTold = !news.isEmpty() || looks % looksBetweenSigns == 0;
        goesOn = (!isTold || connection.send(event)) && server->pause(timeBetweenLooks);
    }
}

} // namespace simulator
