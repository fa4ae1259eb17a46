#include "simulator/operationsendpoint.h"

#include "simulator/connections.h"
#include "simulator/wire.h"

#include <QJsonDocument>

#include <chrono>
#include <functional>
#include <utility>

namespace simulator {

using namespace Qt::Literals::StringLiterals;

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

/// The code is wrong all the same, only said in the other form that services use.
Answer asValidationError(const Answer &answer)
{
    const auto status = answer.body.value("smsConfirmation"_L1).toObject();
    if (status.value("processingStatus"_L1) != "IncorrectConfirmationCode"_L1)
        return answer;
    return refusal(QStringLiteral("The code is wrong"), QStringLiteral("smsConfirmation"));
}

} // namespace

OperationsEndpoint::OperationsEndpoint(Service &service, FaultPlan &faults, const Options &options)
    : service(service)
    , faults(faults)
    , options(options)
{}

void OperationsEndpoint::answer(const httplib::Request &request, httplib::Response &response)
{
    const auto received = receive(request);
    count(received);
    if (const auto fault = faults.next(operationOf(received))) {
        play(*fault, received, request, response);
        return;
    }
    const auto answer = service.answer(received);
    print(received, &answer);
    send(answer, response);
}

void OperationsEndpoint::play(const Fault &fault, const ReceivedRequest &received,
                              const httplib::Request &request, httplib::Response &response)
{
    if (options.verbose && options.print)
        options.print(QStringLiteral("fault: %1").arg(faultName(fault.kind)));
    if (fault.kind == FaultKind::Delay && !fault.executed)
        pause(fault.milliseconds);
    const bool done = fault.executed || fault.kind == FaultKind::Delay ||
                      fault.kind == FaultKind::SlowDrip ||
                      fault.kind == FaultKind::WrongCodeAsValidationError;
    const auto answer = done ? service.answer(received) : success();
    print(received, done ? &answer : nullptr);
    if (fault.kind == FaultKind::Drop) {
        shutConnections(request.local_port, request.remote_port);
        return;
    }
    if (fault.kind == FaultKind::Delay && fault.executed)
        pause(fault.milliseconds);
    sendFaulty(fault, answer, response);
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
            pause(fault.milliseconds);
            return sink.write(body.data() + offset, 1);
        });
        break;
    case FaultKind::EmptyBody:
        send({.httpCode = fault.httpCode}, response);
        break;
    case FaultKind::Http500:
        send({.httpCode = 500}, response);
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

void OperationsEndpoint::print(const ReceivedRequest &received, const Answer *answer) const
{
    if (!options.verbose || !options.print)
        return;
    const auto sent = QJsonDocument::fromJson(received.body);
    const auto given = answer ? QStringLiteral("answer %1\n%2")
                                    .arg(QString::number(answer->httpCode),
                                         QString::fromUtf8(QJsonDocument(answer->body).toJson()))
                              : QStringLiteral("not done");
    options.print(QStringLiteral("%1\n%2%3")
                      .arg(operationOf(received),
                           QString::fromUtf8(sent.isNull() ? received.body : sent.toJson()),
                           given));
}

void OperationsEndpoint::pause(int milliseconds)
{
    std::unique_lock lock(waitMutex);
    waitEnded.wait_for(lock, std::chrono::milliseconds(milliseconds),
                       [this] { return interrupted; });
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
