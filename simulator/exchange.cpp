#include "simulator/bodycheck.h"
#include "simulator/presets.h"
#include "simulator/simulator.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QJsonDocument>

#include <algorithm>
#include <cmath>

namespace simulator {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

void Simulator::answer(const Request &request, Connection &connection)
{
    QElapsedTimer timer;
    timer.start();
    const auto operation = request.item(u"operation"_s);
    const auto fault = begin(operation);
    const bool isDelayed = fault["kind"_L1] == "delay"_L1;
    const bool isFirst = fault["executed"_L1].toBool(true);
    const std::chrono::milliseconds delay(isDelayed ? fault["milliseconds"_L1].toInt(usualDelay)
                                                    : 0);
    server->pause(isFirst ? 0ms : delay);
    const bool isDone = isFirst || isDelayed;
    const auto given = isDone ? carryOut(request, operation) : success();
    server->pause(isFirst ? delay : 0ms);
    const auto sent = asPlayed(fault, given);
    // Before the answer, because its receiver may ask for the exchange at once.
    note({{"at"_L1, QDateTime::currentMSecsSinceEpoch()},
          {"operation"_L1, operation},
          {"connection"_L1, connection.number},
          {"milliseconds"_L1, std::round(double(timer.nsecsElapsed()) / 100'000) / 10},
          {"fault"_L1, fault["kind"_L1].toString()},
          {"isDone"_L1, isDone}},
         request, sent);
    play(fault, sent, connection);
}

QJsonObject Simulator::begin(const QString &operation)
{
    constexpr auto longestWait = 2s;
    std::unique_lock lock(mutex);
    requests.insert(operation, requests[operation].toInt() + 1);
    if (options.capacity == 0)
        return faults.next(operation);
    const auto now = std::chrono::steady_clock::now();
    const auto turn = std::max(nextTurn, now);
    if (turn - now > longestWait) {
        faults.count(turnedAway);
        return {{"kind"_L1, turnedAway},
                {"executed"_L1, false},
                {"retryAfter"_L1, qint64(longestWait.count())}};
    }
    nextTurn = turn + std::chrono::nanoseconds(1s) / options.capacity;
    lock.unlock();
    server->pause(turn - now);
    lock.lock();
    return faults.next(operation);
}

Answer Simulator::carryOut(const Request &request, const QString &operation)
{
    if (auto refused = checkEnvelope(request))
        return *std::move(refused);
    QJsonParseError error;
    const auto document = QJsonDocument::fromJson(request.body, &error);
    if (!document.isObject())
        return protocolError(400, u"The body is no JSON object (byte %1)"_s.arg(error.offset));
    const std::lock_guard lock(mutex);
    return service.answer(operation, document.object());
}

std::optional<Answer> Simulator::checkEnvelope(const Request &request) const
{
    QJsonObject headers;
    for (const auto &name : {u"Content-Type"_s, u"Accept"_s})
        headers.insert(name, request.headers.values(name.toLower()).join(u", "_s));
    if (auto wrong = checkQuery(request, u"envelope"_s, headers))
        return wrong;
    if (const auto sent = request.item(u"endpointId"_s); sent != options.endpoint)
        return protocolError(403, u"Unknown endpoint '%1'"_s.arg(sent));
    // The expected value is a secret, and the sent one may be.
    if (!request.has(u"authorization"_s, u"Mindbox secretKey=\"%1\""_s.arg(options.secretKey)))
        return protocolError(401, u"The secret key is missing or wrong"_s);
    return {};
}

std::optional<Answer> Simulator::checkQuery(const Request &request, const QString &shape,
                                            QJsonObject more)
{
    for (const auto &[name, value] : request.query.queryItems(QUrl::FullyDecoded)) {
        if (more.contains(name))
            return protocolError(400, u"%1 stands twice"_s.arg(name));
        more.insert(name, value);
    }
    const auto wrong = inWords(checkBody(more, u"others"_s, shape));
    return wrong.isEmpty() ? std::nullopt : std::optional(protocolError(400, wrong));
}

void Simulator::note(QJsonObject exchange, const Request &request, const Answer &answer)
{
    const auto fault = exchange["fault"_L1].toString();
    const bool isDropped = fault == "drop"_L1;
    const auto parts = [this](const QByteArray &head, const QByteArray &body) {
        return QJsonObject{{"head"_L1, shown(head)}, {"body"_L1, shown(body)}};
    };
    exchange.insert("httpCode"_L1, isDropped ? 0 : answer.httpCode);
    exchange.insert("outcome"_L1, isDropped || fault == "cut"_L1 ? QString() : answer.outcome());
    exchange.insert("request"_L1, parts(request.head.toUtf8(), request.body));
    exchange.insert("answer"_L1, isDropped ? parts({}, {}) : parts(answer.head(), answer.body));
    const auto body = QJsonDocument::fromJson(request.body).object();
    const std::lock_guard lock(mutex);
    state.note(merged(exchange, service.subject(body)));
}

QString Simulator::shown(const QByteArray &text) const
{
    constexpr qsizetype most = 10'000;
    auto shown = QString::fromUtf8(text.left(most + options.secretKey.size()));
    if (!options.secretKey.isEmpty())
        shown.replace(options.secretKey, u"…"_s);
    return shown.size() > most ? shown.left(most) + u" …"_s : shown;
}

void Simulator::play(const QJsonObject &fault, const Answer &answer, Connection &connection) const
{
    const auto kind = fault["kind"_L1].toString();
    const auto start = answer.head();
    const auto rest = answer.rest();
    if (kind == "drop"_L1 || kind == "cut"_L1) {
        if (kind == "cut"_L1)
            connection.send(start + rest.first(rest.size() / 2));
        connection.end();
        return;
    }
    if (kind != "slowDrip"_L1) {
        connection.send(start + rest);
        return;
    }
    const std::chrono::milliseconds between(fault["milliseconds"_L1].toInt(usualDelay));
    bool goesOn = connection.send(start);
    for (qsizetype i = 0; goesOn && i < rest.size(); ++i)
        goesOn = server->pause(between) && connection.send(rest.mid(i, 1));
}

} // namespace simulator
