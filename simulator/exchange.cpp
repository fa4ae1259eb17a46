#include "simulator/envelope.h"
#include "simulator/pause.h"
#include "simulator/simulator.h"
#include "simulator/wire.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QJsonDocument>

#include <cmath>
#include <functional>

namespace simulator {

using namespace Qt::StringLiterals;

namespace {

/// A body as the log keeps it.
QString cut(const QByteArray &body)
{
    constexpr qsizetype mostBytes = 4000;
    return QString::fromUtf8(body.left(mostBytes)) +
           (body.size() > mostBytes ? u" …"_s : QString());
}

/// Writes from the answer's body, from the offset on; returns false to close the connection.
using Writer =
    std::function<bool(const std::string &body, std::size_t offset, httplib::DataSink &sink)>;

/// Has the body of the response written piece by piece.
void sendInPieces(httplib::Response &response, const Writer &write)
{
    const auto body = std::exchange(response.body, {});
    // The library wants no writer for nothing.
    if (body.empty())
        return;
    response.headers.erase("Content-Type");
    response.set_content_provider(
        body.size(), jsonType,
        [body, write](std::size_t offset, std::size_t, httplib::DataSink &sink) {
            return write(body, offset, sink);
        });
}

/// What the fault makes of the operation's answer.
Answer asPlayed(const Fault &fault, const Answer &answer)
{
    const auto status = answer.body["smsConfirmation"_L1]["processingStatus"_L1];
    const auto nothing = [&fault](int usualCode) {
        return Answer{.httpCode = fault.httpCode > 0 ? fault.httpCode : usualCode};
    };
    switch (fault.kind) {
    case FaultKind::EmptyBody:
        return nothing(200);
    case FaultKind::Http500:
        return nothing(500);
    case FaultKind::Busy:
        return nothing(503);
    case FaultKind::WrongCodeAsValidationError:
        // The code is wrong all the same, only said in the other form that services use.
        return status == "IncorrectConfirmationCode"_L1
                   ? refusal(u"The code is wrong"_s, u"smsConfirmation"_s)
                   : answer;
    default:
        return answer;
    }
}

void sendFaulty(const Fault &fault, const Answer &answer, const httplib::Request &request,
                httplib::Response &response, const std::stop_token &stop)
{
    send(asPlayed(fault, answer), response);
    if (fault.kind == FaultKind::Drop) {
        shutConnections(request.local_port, request.remote_port);
    } else if (fault.kind == FaultKind::Busy) {
        response.set_header("Retry-After", std::to_string(fault.retryAfter));
    } else if (fault.kind == FaultKind::Html) {
        response.status = 200;
        response.set_content("<html><body>Service is being repaired</body></html>", "text/html");
    } else if (fault.kind == FaultKind::Cut) {
        sendInPieces(response, [](const auto &body, auto, auto &sink) {
            sink.write(body.data(), body.size() / 2);
            return false;
        });
    } else if (fault.kind == FaultKind::SlowDrip) {
        sendInPieces(response, [=](const auto &body, auto offset, auto &sink) {
            pause(stop, std::chrono::milliseconds(fault.milliseconds));
            return sink.write(body.data() + offset, 1);
        });
    }
}

} // namespace

void Simulator::answer(const httplib::Request &request, httplib::Response &response)
{
    QElapsedTimer timer;
    timer.start();
    const auto stop = stopping.get_token();
    const auto query = readQuery(request.target);
    const auto operation = query.queryItemValue(u"operation"_s, QUrl::FullyDecoded);
    const auto connection = log.count(operation);
    const auto fault = nextFault(operation, stop);
    const auto delay = [&](bool isDone) {
        if (fault.kind == FaultKind::Delay && fault.executed == isDone)
            pause(stop, std::chrono::milliseconds(fault.milliseconds));
    };
    delay(false);
    const auto answer = fault.isDone() ? carryOut(request, query, operation) : success();
    delay(true);
    const auto sent = bytes(request.body);
    print(operation, fault, sent, answer);
    sendFaulty(fault, answer, request, response, stop);
    log.add({{"at"_L1, QDateTime::currentMSecsSinceEpoch()},
             {"operation"_L1, operation},
             {"connection"_L1, connection},
             {"milliseconds"_L1, std::round(double(timer.nsecsElapsed()) / 100'000) / 10},
             {"fault"_L1, faultName(fault.kind)},
             {"isDone"_L1, fault.isDone()},
             // 0 when no answer was sent.
             {"httpCode"_L1, fault.kind == FaultKind::Drop ? 0 : response.status},
             {"sent"_L1, cut(sent)},
             {"answer"_L1, cut(bodyBytes(answer.body))}});
}

Fault Simulator::nextFault(const QString &operation, const std::stop_token &stop)
{
    const auto wait = capacity.enter();
    if (wait > Capacity::longestWait)
        return {.kind = FaultKind::Busy,
                .executed = false,
                .retryAfter = Capacity::longestWait.count()};
    if (wait.count() > 0)
        pause(stop, wait);
    return faults.next(operation);
}

Answer Simulator::carryOut(const httplib::Request &request, const QUrlQuery &query,
                           const QString &operation)
{
    if (auto refused = checkEnvelope(request, query, options))
        return *std::move(refused);
    return service.answer(operation, bytes(request.body));
}

void Simulator::print(const QString &operation, const Fault &fault, const QByteArray &sent,
                      const Answer &answer) const
{
    if (!options.verbose || !options.print)
        return;
    const auto indented = [](const QByteArray &body) {
        const auto document = QJsonDocument::fromJson(body);
        return QString::fromUtf8(document.isNull() ? body : document.toJson());
    };
    if (fault.kind != FaultKind::None)
        options.print(u"fault: %1"_s.arg(faultName(fault.kind)));
    const auto given =
        u"answer %1\n%2"_s.arg(QString::number(answer.httpCode), indented(bodyBytes(answer.body)));
    options.print(
        u"%1\n%2%3"_s.arg(operation, indented(sent), fault.isDone() ? given : u"not done"_s));
}

} // namespace simulator
