#pragma once

#include "simulator/receivedrequest.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonObject>
#include <QMap>

#include <mutex>

namespace simulator {

/// An operation's request and what came of it.
struct Exchange
{
    QString operation;
    int connection = 0;    ///< Which one carried it, from 1.
    QElapsedTimer timer{}; ///< Since the request came.
    QString fault{};       ///< The fault played, if any.
    bool isDone = true;    ///< Whether the operation was carried out.
    int httpCode = 0;      ///< 0 when no answer was sent.
    QByteArray sent{};     ///< Body of the request.
    QByteArray answer{};   ///< Body of the operation's answer.
};

/// What went over the wire: how much, and the latest of it. Usable from several threads.
class ExchangeLog
{
public:
    /// Counts a request; called by the thread of its connection, which has no other.
    Exchange begin(const ReceivedRequest &received);
    void add(const Exchange &exchange);

    /// Members "requests" (by operation) and "connections" (those that carried operations).
    QJsonObject counts() const;
    ReceivedRequest lastRequest() const;
    /// The latest exchanges with numbers above `number`, their bodies cut short.
    QJsonArray since(qint64 number) const;
    void reset();

private:
    mutable std::mutex mutex;
    QMap<QString, int> requests;
    int connections = 0;
    quint64 counting = 1; ///< Number of the count that a reset began.
    ReceivedRequest last;
    QJsonArray latest;
    qint64 lastNumber = 0; ///< Of the exchanges; a reset does not begin anew.
};

} // namespace simulator
