#include "simulator/exchangelog.h"

#include <QDateTime>

#include <cmath>

namespace simulator {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype mostExchanges = 100;
constexpr qsizetype mostBytes = 4000;

/// The connection of this thread: in which count it was counted last, and as which.
struct CountedConnection
{
    quint64 counting = 0; ///< 0 for none.
    int number = 0;
};
thread_local CountedConnection connection;

} // namespace

Exchange ExchangeLog::begin(const ReceivedRequest &received)
{
    const std::lock_guard lock(mutex);
    Exchange exchange{.operation = received.queryItem("operation"_L1), .sent = received.body};
    exchange.timer.start();
    ++requests[exchange.operation];
    if (connection.counting != counting)
        connection = {.counting = counting, .number = ++connections};
    exchange.connection = connection.number;
    last = received;
    return exchange;
}

void ExchangeLog::add(const Exchange &exchange)
{
    const auto text = [](const QByteArray &body) {
        return QString::fromUtf8(body.left(mostBytes)) +
               (body.size() > mostBytes ? u" …"_s : QString());
    };
    const auto microseconds = static_cast<double>(exchange.timer.nsecsElapsed()) / 1000;
    const std::lock_guard lock(mutex);
    latest.append(QJsonObject{{"number"_L1, ++lastNumber},
                              {"at"_L1, QDateTime::currentMSecsSinceEpoch()},
                              {"operation"_L1, exchange.operation},
                              {"connection"_L1, exchange.connection},
                              {"milliseconds"_L1, std::round(microseconds / 100) / 10},
                              {"fault"_L1, exchange.fault},
                              {"isDone"_L1, exchange.isDone},
                              {"httpCode"_L1, exchange.httpCode},
                              {"sent"_L1, text(exchange.sent)},
                              {"answer"_L1, text(exchange.answer)}});
    if (latest.size() > mostExchanges)
        latest.removeFirst();
}

QJsonObject ExchangeLog::counts() const
{
    const std::lock_guard lock(mutex);
    QJsonObject byOperation;
    for (auto operation = requests.begin(); operation != requests.end(); ++operation)
        byOperation.insert(operation.key(), *operation);
    return {{"requests"_L1, byOperation}, {"connections"_L1, connections}};
}

ReceivedRequest ExchangeLog::lastRequest() const
{
    const std::lock_guard lock(mutex);
    return last;
}

QJsonArray ExchangeLog::since(qint64 number) const
{
    const std::lock_guard lock(mutex);
    QJsonArray newer;
    for (const auto exchange : latest) {
        if (exchange["number"_L1].toInteger() > number)
            newer.append(exchange);
    }
    return newer;
}

void ExchangeLog::reset()
{
    const std::lock_guard lock(mutex);
    requests.clear();
    connections = 0;
    ++counting;
    last = {};
    latest = {};
}

} // namespace simulator
