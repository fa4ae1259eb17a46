#include "simulator/faults.h"

#include "simulator/bodycheck.h"

#include <QJsonArray>

#include <algorithm>
#include <array>

namespace simulator {

using namespace Qt::StringLiterals;

namespace {

struct KindName
{
    FaultKind kind;
    QLatin1String name;
};
constexpr auto kindNames = std::to_array<KindName>({
    {FaultKind::None, ""_L1},
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

struct Number
{
    QLatin1String name;
    int Fault::*value;
};
constexpr auto numbers = std::to_array<Number>({
    {"count"_L1, &Fault::count},
    {"milliseconds"_L1, &Fault::milliseconds},
    {"httpCode"_L1, &Fault::httpCode},
    {"retryAfter"_L1, &Fault::retryAfter},
});

/// Of an order that was found right.
Fault fromJson(const QJsonObject &order)
{
    Fault fault{.kind = *faultKind(order["kind"_L1].toString()),
                .operation = order["operation"_L1].toString(),
                .executed = order["executed"_L1].toBool(true),
                .probability = order["probability"_L1].toDouble(1)};
    for (const auto &[name, value] : numbers)
        fault.*value = order[name].toInt(fault.*value);
    return fault;
}

QJsonObject toJson(const Fault &fault)
{
    QJsonObject order{{"kind"_L1, faultName(fault.kind)},
                      {"operation"_L1, fault.operation},
                      {"executed"_L1, fault.executed},
                      {"probability"_L1, fault.probability}};
    for (const auto &[name, value] : numbers)
        order.insert(name, fault.*value);
    return order;
}

} // namespace

QString faultName(FaultKind kind)
{
    return std::ranges::find(kindNames, kind, &KindName::kind)->name;
}

std::optional<FaultKind> faultKind(const QString &name)
{
    const auto *const known = std::ranges::find(kindNames, name, &KindName::name);
    return known == kindNames.end() || name.isEmpty() ? std::nullopt : std::optional(known->kind);
}

bool Fault::isDone() const
{
    return executed || kind == FaultKind::Delay || kind == FaultKind::SlowDrip ||
           kind == FaultKind::WrongCodeAsValidationError;
}

void FaultPlan::add(const Fault &fault)
{
    const std::lock_guard lock(mutex);
    const auto drawn = std::ranges::find(waiting, true, &Fault::isDrawn);
    waiting.insert(fault.isDrawn ? waiting.end() : drawn, fault);
}

QString FaultPlan::addJson(const QJsonObject &order)
{
    const bool isRandom = order.contains("random"_L1);
    const auto wrong = checkBody(order, isRandom ? u"random faults"_s : u"one fault"_s);
    if (!wrong.isEmpty())
        return (wrong[0]["location"_L1].toString() + u' ' + wrong[0]["message"_L1].toString())
            .trimmed();
    if (!isRandom)
        add(fromJson(order));
    else if (order["random"_L1]["kinds"_L1].toArray().isEmpty())
        return u"random.kinds must name a kind of fault"_s;
    else
        addRandom(order["random"_L1].toObject());
    return {};
}

void FaultPlan::addRandom(const QJsonObject &order)
{
    {
        const std::lock_guard lock(mutex);
        waiting.removeIf([](const Fault &fault) { return fault.isDrawn; });
        generator.seed(static_cast<quint32>(order["seed"_L1].toInteger()));
    }
    const auto names = order["kinds"_L1].toArray();
    const auto share = order["probability"_L1].toDouble() / double(names.size());
    // A kind is tried only when those before it did not hit, so that each gets the same share.
    for (double before = 0; const auto name : names) {
        auto fault = fromJson({{"kind"_L1, name}, {"milliseconds"_L1, order["milliseconds"_L1]}});
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
    played = {};
}

Fault FaultPlan::next(const QString &operation)
{
    const std::lock_guard lock(mutex);
    const auto found =
        std::ranges::find_if(waiting, [&](const Fault &fault) { return hits(fault, operation); });
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
    const auto name = faultName(fault.kind);
    played.insert(name, played[name].toInt() + 1);
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
    QJsonArray orders;
    for (const auto &fault : waiting)
        orders.append(simulator::toJson(fault));
    return {{"played"_L1, played}, {"waiting"_L1, orders}};
}

} // namespace simulator
