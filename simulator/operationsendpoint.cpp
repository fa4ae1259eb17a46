#include "simulator/operationsendpoint.h"

#include "simulator/wire.h"

#include <QJsonDocument>

#include <functional>
#include <string>
#include <utility>

namespace simulator {

using namespace Qt::StringLiterals;

namespace {

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

/// Whether the operation is carried out although, or before, the fault is played.
bool isDoneWith(const Fault &fault)
{
    return fault.executed || fault.kind == FaultKind::Delay || fault.kind == FaultKind::SlowDrip ||
           fault.kind == FaultKind::WrongCodeAsValidationError;
}

} // namespace

OperationsEndpoint::OperationsEndpoint(Service &service, FaultPlan &faults, ExchangeLog &log,
                                       Pauses &pauses, const Options &options)
    : service(service)
    , faults(faults)
    , log(log)
    , pauses(pauses)
    , options(options)
    , capacity(options.capacity)
{}

void OperationsEndpoint::answer(const httplib::Request &request, httplib::Response &response)
{
    const auto received = receive(request);
    auto exchange = log.begin(received);
    const auto fault = nextFault(exchange.operation);
    if (fault) {
        exchange.fault = faultName(fault->kind);
        exchange.isDone = isDoneWith(*fault);
    }
    const auto answer = carryOut(received, fault);
    exchange.httpCode = answer.httpCode;
    exchange.answer = QByteArray::fromStdString(bodyBytes(answer.body));
    print(exchange);
    if (fault)
        sendFaulty(*fault, answer, request, response);
    else
        send(answer, response);
    exchange.httpCode = fault && fault->kind == FaultKind::Drop ? 0 : response.status;
    log.add(exchange);
}

std::optional<Fault> OperationsEndpoint::nextFault(const QString &operation)
{
    if (const auto wait = capacity.enter()) {
        if (*wait > Capacity::Clock::duration(0))
            pauses.pause(*wait);
        return faults.next(operation);
    }
    return Fault{.kind = FaultKind::Busy,
                 .executed = false,
                 .retryAfter = static_cast<int>(Capacity::longestWait.count())};
}

Answer OperationsEndpoint::carryOut(const ReceivedRequest &received,
                                    const std::optional<Fault> &fault)
{
    const auto delay = [&](bool isDone) {
        if (fault && fault->kind == FaultKind::Delay && fault->executed == isDone)
            pauses.pause(std::chrono::milliseconds(fault->milliseconds));
    };
    delay(false);
    auto answer = !fault || isDoneWith(*fault) ? service.answer(received) : success();
    delay(true);
    return answer;
}

void OperationsEndpoint::sendFaulty(const Fault &fault, const Answer &answer,
                                    const httplib::Request &request, httplib::Response &response)
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
            pauses.pause(std::chrono::milliseconds(fault.milliseconds));
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
    case FaultKind::Drop:
        shutConnections(request.local_port, request.remote_port);
        break;
    case FaultKind::Delay:
        send(answer, response);
        break;
    }
}

void OperationsEndpoint::print(const Exchange &exchange) const
{
    if (!options.verbose || !options.print)
        return;
    const auto indented = [](const QByteArray &body) {
        const auto document = QJsonDocument::fromJson(body);
        return QString::fromUtf8(document.isNull() ? body : document.toJson());
    };
    if (!exchange.fault.isEmpty())
        options.print(u"fault: %1"_s.arg(exchange.fault));
    const auto given =
        u"answer %1\n%2"_s.arg(QString::number(exchange.httpCode), indented(exchange.answer));
    options.print(u"%1\n%2%3"_s.arg(exchange.operation, indented(exchange.sent),
                                    exchange.isDone ? given : u"not done"_s));
}

} // namespace simulator
