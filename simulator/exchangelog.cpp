#include "simulator/exchangelog.h"

#include <utility>

namespace simulator {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype mostExchanges = 100;

/// The connection of this thread: in which count it was counted last, and as which.
struct CountedConnection
{
    quint64 counting = 0; ///< 0 for none.
    int number = 0;
};
thread_local CountedConnection connection;

} // namespace

int ExchangeLog::count(const QString &operation)
{
    const std::lock_guard lock(mutex);
    requests.insert(operation, requests[operation].toInt() + 1);
    if (connection.counting != counting)
        connection = {.counting = counting, .number = ++connections};
    return connection.number;
}

void ExchangeLog::add(QJsonObject exchange)
{
    const std::lock_guard lock(mutex);
    exchange.insert("number"_L1, ++lastNumber);
    latest.append(exchange);
    if (latest.size() > mostExchanges)
        latest.removeFirst();
}

QJsonObject ExchangeLog::counts() const
{
    const std::lock_guard lock(mutex);
    return {{"requests"_L1, requests}, {"connections"_L1, connections}};
}

QJsonArray ExchangeLog::since(qint64 &number) const
{
    const std::lock_guard lock(mutex);
    const auto known = std::exchange(number, lastNumber);
    QJsonArray newer;
    for (const auto exchange : latest) {
        if (exchange["number"_L1].toInteger() > known)
            newer.append(exchange);
    }
    return newer;
}

void ExchangeLog::reset()
{
    const std::lock_guard lock(mutex);
    requests = {};
    connections = 0;
    ++counting;
    latest = {};
}

} // namespace simulator
