#pragma once

#include <QJsonObject>
#include <QList>
#include <QRandomGenerator>
#include <QString>

#include <mutex>
#include <optional>

namespace simulator {

/// A way in which an exchange goes wrong.
enum class FaultKind {
    None,                      ///< It does not.
    Delay,                     ///< The answer comes after `milliseconds`.
    Drop,                      ///< The connection closes without a byte.
    Cut,                       ///< The connection closes after half of the answer's body.
    EmptyBody,                 ///< The HTTP code `httpCode`, by itself 200, and no body.
    Http500,                   ///< HTTP code 500 and no body.
    Busy,                      ///< `httpCode`, by itself 503, no body, `Retry-After: retryAfter`.
    Html,                      ///< A page with HTTP code 200 where JSON is expected.
    SlowDrip,                  ///< The answer's body comes byte by byte, one every `milliseconds`.
    WrongCodeAsValidationError ///< A wrong SMS code is answered as a validation error.
};

/// The name of the kind over HTTP and in the dump, such as "slowDrip"; empty for none.
QString faultName(FaultKind kind);
std::optional<FaultKind> faultKind(const QString &name);

/// A fault to be played on the next requests.
struct Fault
{
    FaultKind kind = FaultKind::None;
    QString operation{}; ///< Name of the only operation hit; empty for every operation.
    int count = 1;       ///< How many requests are hit; 0 for all until it is dropped.
    /// Whether the operation is done before the fault plays: a lost answer, else a lost request.
    /// Delay does it after the wait when this is false; SlowDrip and WrongCodeAsValidationError
    /// carry the operation's own answer and always do it.
    bool executed = true;
    int milliseconds = 100;
    int httpCode = 0;       ///< 0 for what the kind has by itself.
    int retryAfter = 1;     ///< Seconds.
    double probability = 1; ///< Whether a request is hit, by lot.
    /// Whether `executed` and the length of a delay, up to `milliseconds`, are drawn by lot, too.
    bool isDrawn = false;

    /// Whether the operation is carried out although, or before, the fault is played.
    bool isDone() const;
};

/// Faults waiting to be played, and how many of each kind were. Usable from several threads.
class FaultPlan
{
public:
    void add(const Fault &fault);
    /// Takes an order of the control door: one fault, or {"random": {...}}, by which any of some
    /// kinds hits what no fault ordered singly does. Returns what is wrong with it, a member out
    /// of its range included; empty when it was taken.
    QString addJson(const QJsonObject &order);
    /// Drops every waiting fault, or those of one kind; the counts stay.
    void clear(const QString &kind = {});
    /// Drops the counts as well.
    void reset();

    /// The fault to play on this request, taken off the plan and counted.
    Fault next(const QString &operation);
    /// Members "played" (counts by name of the kind) and "waiting" (orders as `addJson` takes
    /// them).
    QJsonObject toJson() const;

private:
    void addRandom(const QJsonObject &order);
    bool hits(const Fault &fault, const QString &operation);

    mutable std::mutex mutex;
    QList<Fault> waiting; ///< The drawn ones at the end.
    QRandomGenerator generator = QRandomGenerator::securelySeeded();
    QJsonObject played;
};

} // namespace simulator
