#pragma once

#include "simulator/answer.h"

#include <QList>
#include <QRandomGenerator>

namespace simulator {

inline constexpr int usualDelay = 100; ///< Default of "milliseconds".
/// The kind of fault that counts requests beyond the capacity.
inline constexpr QLatin1String turnedAway{"capacity"};

/// The faults still to be played, and a count of the played ones by kind.
///
/// A fault is a JSON object. "kind" is required. "operation" limits the fault to one operation.
/// "count" is 1 by default; 0 means until it is dropped. "probability" is 1 by default. "executed"
/// tells whether the operation is done before the fault plays, by default true. bodies.json lists
/// the other members of each kind. A request gets the first waiting fault that hits it.
class FaultPlan
{
public:
    /// Returns the mistake in the fault; empty when it was added.
    [[nodiscard]] QString add(const QJsonObject &fault);
    /// Drops all waiting faults, or those of one kind; the counts stay.
    void clear(const QString &kind);

    /// Takes the fault for this request off the plan and counts it; empty for none.
    QJsonObject next(const QString &operation);
    void count(const QString &kind) { played.insert(kind, played[kind].toInt() + 1); }
    /// Members "played" (counts by kind) and "waiting" (the faults).
    QJsonObject toJson() const;

private:
    QList<QJsonObject> waiting;
    QRandomGenerator generator = QRandomGenerator::securelySeeded();
    QJsonObject played;
};

/// The operation's answer with the fault applied; for "drop" and "cut", the whole answer.
Answer asPlayed(const QJsonObject &fault, const Answer &answer);

} // namespace simulator
