#include "simulator/faults.h"

#include "simulator/bodycheck.h"

#include <QJsonArray>
#include <QLocale>

#include <algorithm>
#include <array>
#include <limits>

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

struct Range
{
    QLatin1String member;
    qint64 least;
    qint64 most;
};

constexpr std::array ranges{
    Range{"count"_L1, 1, 1'000'000}, Range{"milliseconds"_L1, 0, 600'000},
    Range{"httpCode"_L1, 200, 599},  Range{"seed"_L1, 0, std::numeric_limits<quint32>::max()},
    Range{"probability"_L1, 0, 1},
};

/// Says which number of an order, or of its "random", lies outside its range; empty for none.
QString outOfRange(const QJsonObject &order)
{
    for (const auto &[member, least, most] : ranges) {
        const auto number = order.value(member).toDouble(static_cast<double>(least));
        if (number < static_cast<double>(least) || number > static_cast<double>(most))
            return QStringLiteral("%1 must be from %2 to %3, not %4")
                .arg(member)
                .arg(least)
                .arg(most)
                .arg(number, 0, 'g', QLocale::FloatingPointShortest);
    }
    return {};
}

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

QString FaultPlan::addJson(const QJsonObject &order)
{
    const bool isRandom = order.contains("random"_L1);
    const auto messages = isRandom ? checkBody(order, randomOrder) : checkBody(order, faultMembers);
    if (!messages.isEmpty())
        return firstMessage(messages);
    const auto content = isRandom ? order.value("random"_L1).toObject() : order;
    if (auto wrong = outOfRange(content); !wrong.isEmpty())
        return wrong;
    return isRandom ? setRandom(content) : addFault(content);
}

QString FaultPlan::addFault(const QJsonObject &order)
{
    const Fault usual;
    const auto name = order.value("kind"_L1).toString();
    const auto kind = faultKind(name);
    if (!kind)
        return unknownKind(name);
    add({.kind = *kind,
         .operation = order.value("operation"_L1).toString(),
         .count = order.value("count"_L1).toInt(usual.count),
         .executed = order.value("executed"_L1).toBool(usual.executed),
         .milliseconds = order.value("milliseconds"_L1).toInt(usual.milliseconds),
         .httpCode = order.value("httpCode"_L1).toInt(usual.httpCode)});
    return {};
}

QString FaultPlan::setRandom(const QJsonObject &order)
{
    const RandomFaults usual;
    RandomFaults faults{.seed = static_cast<quint32>(order.value("seed"_L1).toInteger()),
                        .probability = order.value("probability"_L1).toDouble(),
                        .milliseconds = order.value("milliseconds"_L1).toInt(usual.milliseconds)};
    for (const auto name : order.value("kinds"_L1).toArray()) {
        const auto kind = faultKind(name.toString());
        if (!kind)
            return unknownKind(name.toString());
        faults.kinds.append(*kind);
    }
    if (faults.kinds.isEmpty())
        return QStringLiteral("kinds must name a kind of fault");
    const std::lock_guard lock(mutex);
    random = faults;
    generator.seed(faults.seed);
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
    qint64 requests = 0;
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
