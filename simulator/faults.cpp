#include "simulator/faults.h"

#include "simulator/bodycheck.h"

#include <QJsonArray>

#include <algorithm>
#include <array>

namespace simulator {

using namespace Qt::StringLiterals;

namespace {

constexpr auto kindNames = std::to_array<std::pair<FaultKind, QLatin1String>>({
    {FaultKind::Delay, "delay"_L1},
    {FaultKind::Drop, "drop"_L1},
    {FaultKind::Cut, "cut"_L1},
    {FaultKind::EmptyBody, "emptyBody"_L1},
    {FaultKind::Http500, "http500"_L1},
    {FaultKind::Busy, "busy"_L1},
    {FaultKind::Html, "html"_L1},
    {FaultKind::SlowDrip, "slowDrip"_L1},
    {FaultKind::WrongCodeAsValidationError, "wrongCodeAsValidationError"_L1},
});

std::optional<FaultKind> faultKind(const QJsonValue &name)
{
    const auto *const known =
        std::find_if(kindNames.begin(), kindNames.end(),
                     [&name](const auto &kind) { return QJsonValue(kind.second) == name; });
    return known == kindNames.end() ? std::nullopt : std::optional(known->first);
}

template<qint64 least, qint64 most>
bool isFrom(const QJsonValue &value)
{
    const auto number = value.toInteger(least - 1);
    return least <= number && number <= most;
}

const Kind kind{"must be a kind of fault"_L1,
                [](const QJsonValue &value) { return faultKind(value).has_value(); }};
const Kind someKinds{"must be kinds of faults"_L1, [](const QJsonValue &value) {
                         const auto names = value.toArray();
                         return !names.isEmpty() &&
                                std::all_of(names.begin(), names.end(), kind.holds);
                     }};
const Kind count{"must be from 0 to 1000000"_L1, isFrom<0, 1'000'000>};
const Kind duration{"must be from 0 to 600000"_L1, isFrom<0, 600'000>};
const Kind httpCode{"must be from 200 to 599"_L1, isFrom<200, 599>};
const Kind seed{"must be from 0 to 4294967295"_L1, isFrom<0, 0xffff'ffff>};

constexpr auto faultMembers = std::to_array<Member>({
    {"kind"_L1, kind},
    {"operation"_L1, kinds::text, Presence::Optional},
    {"count"_L1, count, Presence::Optional},
    {"executed"_L1, kinds::boolean, Presence::Optional},
    {"milliseconds"_L1, duration, Presence::Optional},
    {"httpCode"_L1, httpCode, Presence::Optional},
    {"retryAfter"_L1, duration, Presence::Optional},
    {"probability"_L1, kinds::probability, Presence::Optional},
});

constexpr auto randomMembers = std::to_array<Member>({
    {"seed"_L1, seed},
    {"probability"_L1, kinds::probability},
    {"kinds"_L1, someKinds},
    {"milliseconds"_L1, duration, Presence::Optional},
});

constexpr auto randomOrder = std::to_array<Member>({nested("random"_L1, randomMembers)});

Fault fromJson(const QJsonObject &order)
{
    const Fault usual;
    return {.kind = *faultKind(order.value("kind"_L1)),
            .operation = order.value("operation"_L1).toString(),
            .count = order.value("count"_L1).toInt(usual.count),
            .executed = order.value("executed"_L1).toBool(usual.executed),
            .milliseconds = order.value("milliseconds"_L1).toInt(usual.milliseconds),
            .httpCode = order.value("httpCode"_L1).toInt(usual.httpCode),
            .retryAfter = order.value("retryAfter"_L1).toInt(usual.retryAfter),
            .probability = order.value("probability"_L1).toDouble(usual.probability)};
}

QJsonObject toJson(const Fault &fault)
{
    return {{"kind"_L1, faultName(fault.kind)},
            {"operation"_L1, fault.operation},
            {"count"_L1, fault.count},
            {"executed"_L1, fault.executed},
            {"milliseconds"_L1, fault.milliseconds},
            {"httpCode"_L1, fault.httpCode},
            {"retryAfter"_L1, fault.retryAfter},
            {"probability"_L1, fault.probability}};
}

} // namespace

QString faultName(FaultKind kind)
{
    return std::find_if(kindNames.begin(), kindNames.end(),
                        [kind](const auto &known) { return known.first == kind; })
        ->second;
}

void FaultPlan::add(const Fault &fault)
{
    const std::lock_guard lock(mutex);
    const auto drawn = std::find_if(waiting.begin(), waiting.end(),
                                    [](const Fault &other) { return other.isDrawn; });
    waiting.insert(fault.isDrawn ? waiting.end() : drawn, fault);
}

QString FaultPlan::addJson(const QJsonObject &order)
{
    const bool isRandom = order.contains("random"_L1);
    const auto wrong = isRandom ? checkBody(order, randomOrder) : checkBody(order, faultMembers);
    if (!wrong.isEmpty())
        return (wrong[0]["location"_L1].toString() + u' ' + wrong[0]["message"_L1].toString())
            .trimmed();
    if (isRandom)
        addRandom(order.value("random"_L1).toObject());
    else
        add(fromJson(order));
    return {};
}

void FaultPlan::addRandom(const QJsonObject &order)
{
    {
        const std::lock_guard lock(mutex);
        waiting.removeIf([](const Fault &fault) { return fault.isDrawn; });
        generator.seed(static_cast<quint32>(order.value("seed"_L1).toInteger()));
    }
    const auto names = order.value("kinds"_L1).toArray();
    const auto share = order.value("probability"_L1).toDouble() / double(names.size());
    // A kind is tried only when those before it did not hit, so that each gets the same share.
    for (double before = 0; const auto name : names) {
        auto fault =
            fromJson({{"kind"_L1, name}, {"milliseconds"_L1, order.value("milliseconds"_L1)}});
        fault.count = 0;
        fault.probability = share / (1 - before);
        fault.isDrawn = true;
        add(fault);
        before += share;
    }
}

void FaultPlan::clear(const QString &kind)
{
    const std::lock_guard lock(mutex);
    waiting.removeIf(
        [&kind](const Fault &fault) { return kind.isEmpty() || faultName(fault.kind) == kind; });
}

void FaultPlan::reset()
{
    clear();
    const std::lock_guard lock(mutex);
    played.clear();
}

std::optional<Fault> FaultPlan::next(const QString &operation)
{
    const std::lock_guard lock(mutex);
    const auto found = std::find_if(waiting.begin(), waiting.end(),
                                    [&](const Fault &fault) { return hits(fault, operation); });
    if (found == waiting.end())
        return {};
    auto fault = *found;
    if (fault.count > 0 && --found->count == 0)
        waiting.erase(found);
    if (fault.isDrawn) {
        fault.executed = generator.bounded(2) == 1;
        if (fault.kind == FaultKind::Delay)
            fault.milliseconds = generator.bounded(fault.milliseconds + 1);
    }
    ++played[faultName(fault.kind)];
    return fault;
}

bool FaultPlan::hits(const Fault &fault, const QString &operation)
{
    return (fault.operation.isEmpty() || fault.operation == operation) &&
           (fault.probability >= 1 || generator.generateDouble() < fault.probability);
}

QJsonObject FaultPlan::toJson() const
{
    const std::lock_guard lock(mutex);
    QJsonObject counts;
    for (auto count = played.begin(); count != played.end(); ++count)
        counts.insert(count.key(), *count);
    QJsonArray orders;
    for (const auto &fault : waiting)
        orders.append(simulator::toJson(fault));
    return {{"played"_L1, counts}, {"waiting"_L1, orders}};
}

} // namespace simulator
