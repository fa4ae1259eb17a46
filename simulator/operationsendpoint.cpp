#include "simulator/operationsendpoint.h"

#include "simulator/wire.h"

#include <QJsonDocument>

#include <functional>
#include <string>
#include <utility>

namespace simulator {

using namespace Qt::StringLiterals;

namespace {

/// In which count this thread's connection was counted last; 0 for none. A thread serves one.
thread_local quint64 connectionCountedIn = 0;

ReceivedRequest receive(const httplib::Request &request)
{
    ReceivedRequest received;
    received.method = bytes(request.method);
    received.target = bytes(request.target);
    received.body = bytes(request.body);
    for (const auto &[name, value] : request.headers) {
        // The library's own entries, which never were on the wire.
        if (name != "REMOTE_ADDR" && name != "REMOTE_PORT" && name != "LOCAL_ADDR" &&
            name != "LOCAL_PORT")
            received.headers.insert(bytes(name).toLower(), bytes(value));
    }
    received.readQuery();
    return received;
}

QString operationOf(const ReceivedRequest &received)
{
    return received.queryItem("operation"_L1);
}

/// Has the body of the answer written piece by piece; `write` gets it with the place to go on
/// from, and returns false to close the connection.
void sendInPieces(
    const Answer &answer, httplib::Response &response,
    std::function<bool(const std::string &body, std::size_t offset, httplib::DataSink &sink)> write)
{
    auto body = bodyBytes(answer.body);
    // The library wants no writer for nothing.
    if (body.empty()) {
        send(answer, response);
        return;
    }
    response.status = answer.httpCode;
    const auto size = body.size();
    response.set_content_provider(size, jsonType,
                                  [body = std::move(body), write = std::move(write)](
                                      std::size_t offset, std::size_t, httplib::DataSink &sink) {
                                      return write(body, offset, sink);
                                  });
}

void sendEmpty(const Fault &fault, int usualCode, httplib::Response &response)
{
    send({.httpCode = fault.httpCode > 0 ? fault.httpCode : usualCode}, response);
}

/// The code is wrong all the same, only said in the other form that services use.
Answer asValidationError(const Answer &answer)
{
    const auto status = answer.body.value("smsConfirmation"_L1).toObject();
    if (status.value("processingStatus"_L1) != "IncorrectConfirmationCode"_L1)
        return answer;
    return refusal(u"The code is wrong"_s, u"smsConfirmation"_s);
}

} // namespace

OperationsEndpoint::OperationsEndpoint(Service &service, FaultPlan &faults, const Options &options)
    : service(service)
    , faults(faults)
    , options(options)
    , capacity(options.capacity)
{}

void OperationsEndpoint::answer(const httplib::Request &request, httplib::Response &response)
{
    const auto received = receive(request);
    count(received);
    if (const auto fault = nextFault(operationOf(received)))
        play(*fault, received, request, response);
    else
        send(carryOut(received), response);
}

std::optional<Fault> OperationsEndpoint::nextFault(const QString &operation)
{
    if (const auto wait = capacity.enter()) {
        if (*wait > Capacity::Clock::duration(0))
            pause(*wait);
        return faults.next(operation);
    }
    return Fault{.kind = FaultKind::Busy,
                 .executed = false,
                 .retryAfter = static_cast<int>(Capacity::longestWait.count())};
}

void OperationsEndpoint::play(const Fault &fault, const ReceivedRequest &received,
                              const httplib::Request &request, httplib::Response &response)
{
    print(u"fault: %1"_s.arg(faultName(fault.kind)));
    const bool isDelay = fault.kind == FaultKind::Delay;
    if (isDelay && !fault.executed)
        pause(std::chrono::milliseconds(fault.milliseconds));
    const auto answer =
        carryOut(received, fault.executed || isDelay || fault.kind == FaultKind::SlowDrip ||
                               fault.kind == FaultKind::WrongCodeAsValidationError);
    if (isDelay && fault.executed)
        pause(std::chrono::milliseconds(fault.milliseconds));
    if (fault.kind == FaultKind::Drop)
        shutConnections(request.local_port, request.remote_port);
    else
        sendFaulty(fault, answer, response);
}

Answer OperationsEndpoint::carryOut(const ReceivedRequest &received, bool isDone)
{
    const auto answer = isDone ? service.answer(received) : success();
    if (options.verbose) {
        const auto sent = QJsonDocument::fromJson(received.body);
        const auto given =
            u"answer %1\n%2"_s.arg(QString::number(answer.httpCode),
                                   QString::fromUtf8(QJsonDocument(answer.body).toJson()));
        print(u"%1\n%2%3"_s.arg(operationOf(received),
                                QString::fromUtf8(sent.isNull() ? received.body : sent.toJson()),
                                isDone ? given : u"not done"_s));
    }
    return answer;
}

void OperationsEndpoint::sendFaulty(const Fault &fault, const Answer &answer,
                                    httplib::Response &response)
{
    switch (fault.kind) {
    case FaultKind::Cut:
        sendInPieces(answer, response, [](const auto &body, auto, auto &sink) {
            sink.write(body.data(), body.size() / 2);
            return false;
        });
        break;
    case FaultKind::SlowDrip:
        sendInPieces(answer, response, [this, fault](const auto &body, auto offset, auto &sink) {
            pause(std::chrono::milliseconds(fault.milliseconds));
            return sink.write(body.data() + offset, 1);
        });
        break;
    case FaultKind::EmptyBody:
        sendEmpty(fault, 200, response);
        break;
    case FaultKind::Busy:
        sendEmpty(fault, 503, response);
        response.set_header("Retry-After", std::to_string(fault.retryAfter));
        break;
    case FaultKind::Http500:
        sendEmpty(fault, 500, response);
        break;
    case FaultKind::Html:
        response.status = 200;
        response.set_content("<html><body>Service is being repaired</body></html>", "text/html");
        break;
    case FaultKind::WrongCodeAsValidationError:
        send(asValidationError(answer), response);
        break;
    case FaultKind::Delay:
    case FaultKind::Drop:
        send(answer, response);
        break;
    }
}

void OperationsEndpoint::count(const ReceivedRequest &received)
{
    const std::lock_guard lock(mutex);
    ++requests[operationOf(received)];
    if (connectionCountedIn != counting)
        ++connections;
    connectionCountedIn = counting;
    last = received;
}

void OperationsEndpoint::print(const QString &text) const
{
    if (options.verbose && options.print)
        options.print(text);
}

void OperationsEndpoint::pause(std::chrono::nanoseconds time)
{
    std::unique_lock lock(waitMutex);
    waitEnded.wait_for(lock, time, [this] { return interrupted; });
}

void OperationsEndpoint::setInterrupted(bool on)
{
    {
        const std::lock_guard lock(waitMutex);
        interrupted = on;
    }
    waitEnded.notify_all();
}

QJsonObject OperationsEndpoint::counts() const
{
    const std::lock_guard lock(mutex);
    QJsonObject byOperation;
    for (auto operation = requests.begin(); operation != requests.end(); ++operation)
        byOperation.insert(operation.key(), *operation);
    return {{"requests"_L1, byOperation}, {"connections"_L1, connections}};
}

ReceivedRequest OperationsEndpoint::lastRequest() const
{
    const std::lock_guard lock(mutex);
    return last;
}

void OperationsEndpoint::reset()
{
    const std::lock_guard lock(mutex);
    requests.clear();
    connections = 0;
    ++counting;
    last = {};
}

} // namespace simulator
