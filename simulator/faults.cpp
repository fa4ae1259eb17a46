#include "simulator/faults.h"

#include "simulator/bodycheck.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <array>

namespace simulator {

using namespace Qt::Literals::StringLiterals;

namespace {

struct KindName
{
    FaultKind kind;
    QLatin1String name;
};

constexpr std::array kindNames{
    KindName{FaultKind::Delay, "delay"_L1},
    KindName{FaultKind::Drop, "drop"_L1},
    KindName{FaultKind::Cut, "cut"_L1},
    KindName{FaultKind::EmptyBody, "emptyBody"_L1},
    KindName{FaultKind::Http500, "http500"_L1},
    KindName{FaultKind::Html, "html"_L1},
    KindName{FaultKind::SlowDrip, "slowDrip"_L1},
    KindName{FaultKind::WrongCodeAsValidationError, "wrongCodeAsValidationError"_L1},
};

constexpr auto faultMembers = std::to_array<Member>({
    {"kind"_L1, Kind::FilledText},
    {"operation"_L1, Kind::Text, Presence::Optional},
    {"count"_L1, Kind::Integer, Presence::Optional},
    {"executed"_L1, Kind::Boolean, Presence::Optional},
    {"milliseconds"_L1, Kind::Integer, Presence::Optional},
    {"httpCode"_L1, Kind::Integer, Presence::Optional},
});

constexpr auto randomMembers = std::to_array<Member>({
    {"seed"_L1, Kind::Integer},
    {"probability"_L1, Kind::Number},
    {"kinds"_L1, Kind::Texts},
    {"milliseconds"_L1, Kind::Integer, Presence::Optional},
});

constexpr auto randomOrder = std::to_array<Member>({nested("random"_L1, randomMembers)});

std::optional<FaultKind> faultKind(const QString &name)
{
    const auto *const known = std::find_if(kindNames.begin(), kindNames.end(),
                                           [&name](const auto &kind) { return kind.name == name; });
    return known == kindNames.end() ? std::nullopt : std::optional(known->kind);
}

QString unknownKind(const QString &name)
{
    return QStringLiteral("unknown kind of fault '%1'").arg(name);
}

QString firstMessage(const QJsonArray &messages)
{
    const auto message = messages.first().toObject();
    return (message.value("location"_L1).toString() + u' ' + message.value("message"_L1).toString())
        .trimmed();
}

} // namespace

QString faultName(FaultKind kind)
{
    return std::find_if(kindNames.begin(), kindNames.end(),
                        [kind](const auto &known) { return known.kind == kind; })
        ->name;
}

void FaultPlan::add(const Fault &fault)
{
    const std::lock_guard lock(mutex);
    if (fault.count > 0)
        waiting.append(fault);
}

void FaultPlan::setRandom(const RandomFaults &faults)
{
    const std::lock_guard lock(mutex);
    random = faults;
    generator.seed(faults.seed);
}

QString FaultPlan::addJson(const QJsonObject &order)
{
    const bool isRandom = order.contains("random"_L1);
    const auto messages = isRandom ? checkBody(order, randomOrder) : checkBody(order, faultMembers);
    if (!messages.isEmpty())
        return firstMessage(messages);
    const auto milliseconds = [](const QJsonObject &object, int otherwise) {
        return std::max(0, object.value("milliseconds"_L1).toInt(otherwise));
    };
    if (!isRandom) {
        const Fault usual;
        const auto name = order.value("kind"_L1).toString();
        const auto kind = faultKind(name);
        if (!kind)
            return unknownKind(name);
        add({.kind = *kind,
             .operation = order.value("operation"_L1).toString(),
             .count = order.value("count"_L1).toInt(usual.count),
             .executed = order.value("executed"_L1).toBool(usual.executed),
             .milliseconds = milliseconds(order, usual.milliseconds),
             .httpCode = order.value("httpCode"_L1).toInt(usual.httpCode)});
        return {};
    }
    const auto object = order.value("random"_L1).toObject();
    RandomFaults faults{.seed = static_cast<quint32>(object.value("seed"_L1).toInteger()),
                        .probability = object.value("probability"_L1).toDouble()};
    faults.milliseconds = milliseconds(object, faults.milliseconds);
    for (const auto name : object.value("kinds"_L1).toArray()) {
        const auto kind = faultKind(name.toString());
        if (!kind)
            return unknownKind(name.toString());
        faults.kinds.append(*kind);
    }
    setRandom(faults);
    return {};
}

void FaultPlan::clear()
{
    const std::lock_guard lock(mutex);
    waiting.clear();
    random = {};
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
    const auto ordered = std::find_if(waiting.begin(), waiting.end(), [&](const Fault &fault) {
        return fault.operation.isEmpty() || fault.operation == operation;
    });
    std::optional<Fault> fault;
    if (ordered != waiting.end()) {
        fault = *ordered;
        if (--ordered->count == 0)
            waiting.erase(ordered);
    } else {
        fault = draw();
    }
    if (fault)
        ++played[faultName(fault->kind)];
    return fault;
}

QJsonObject FaultPlan::toJson() const
{
    const std::lock_guard lock(mutex);
    QJsonObject counts;
    for (auto count = played.begin(); count != played.end(); ++count)
        counts.insert(count.key(), *count);
    int requests = 0;
    for (const auto &fault : waiting)
        requests += fault.count;
    return {{"played"_L1, counts}, {"waiting"_L1, requests}};
}

std::optional<Fault> FaultPlan::draw()
{
    if (random.kinds.isEmpty() || generator.generateDouble() >= random.probability)
        return {};
    Fault fault;
    fault.kind = random.kinds.at(generator.bounded(static_cast<int>(random.kinds.size())));
    fault.executed = generator.bounded(2) == 1;
    fault.milliseconds = fault.kind == FaultKind::Delay ? generator.bounded(random.milliseconds + 1)
                                                        : random.milliseconds;
    return fault;
}

} // namespace simulator
