#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

#include <mutex>

namespace simulator {

/// What went over the wire: how much, and the latest of it. Usable from several threads.
class ExchangeLog
{
public:
    /// Counts a request; called by the thread of its connection, which has no other. Returns which
    /// connection that is, from 1.
    int count(const QString &operation);
    /// Takes in what came of a request; it gets a "number".
    void add(QJsonObject exchange);

    /// Members "requests" (by operation) and "connections" (those that carried operations).
    QJsonObject counts() const;
    /// The latest exchanges with numbers above `number`, which becomes that of the last.
    QJsonArray since(qint64 &number) const;
    void reset();

private:
    mutable std::mutex mutex;
    QJsonObject requests;
    int connections = 0;
    quint64 counting = 1; ///< Number of the count that a reset began.
    QJsonArray latest;
    qint64 lastNumber = 0; ///< Of the exchanges; a reset does not begin anew.
};

} // namespace simulator
