#include "simulator/faults.h"

#include "simulator/bodycheck.h"
#include "simulator/presets.h"

#include <algorithm>

namespace simulator {

using namespace Qt::StringLiterals;

QString FaultPlan::add(const QJsonObject &fault)
{
    const auto wrong = inWords(checkBody(fault, u"faults"_s, fault["kind"_L1].toString()));
    if (wrong.isEmpty())
        waiting.append(fault);
    return wrong;
}

void FaultPlan::clear(const QString &kind)
{
    waiting.removeIf(
        [&](const QJsonObject &fault) { return kind.isEmpty() || fault["kind"_L1] == kind; });
}

QJsonObject FaultPlan::next(const QString &operation)
{
    const auto found = std::ranges::find_if(waiting, [&](const QJsonObject &fault) {
        const bool isMeant = !fault.contains("operation"_L1) || fault["operation"_L1] == operation;
        return isMeant && generator.generateDouble() < fault["probability"_L1].toDouble(1);
    });
    if (found == waiting.end())
        return {};
    auto fault = *found;
    if (const auto left = fault["count"_L1].toInt(1); left == 1)
        waiting.erase(found);
    else if (left > 1)
        found->insert("count"_L1, left - 1);
    count(fault["kind"_L1].toString());
    return fault;
}

QJsonObject FaultPlan::toJson() const
{
    QJsonArray faults;
    for (const auto &fault : waiting)
        faults.append(fault);
    return {{"played"_L1, played}, {"waiting"_L1, faults}};
}

Answer asPlayed(const QJsonObject &fault, const Answer &answer)
{
    static const auto presetAnswers = ownJson(u"faults"_s);
    const auto kind = fault["kind"_L1].toString();
    if (!presetAnswers.contains(kind))
        return answer;
    const auto told = merged(presetAnswers[kind].toObject(), fault);
    const auto body = told["body"_L1];
    // A text is sent as it is, any other body as JSON.
    const bool isText = body.isUndefined() || body.isString();
    auto played = isText ? Answer{.body = body.toString().toUtf8()} : asJson(body);
    played.httpCode = told["httpCode"_L1].toInt(200);
    played.headers = merged(played.headers, told["headers"_L1].toObject());
    played.trailers = told["trailers"_L1].toObject();
    if (const auto seconds = told["retryAfter"_L1]; seconds.isDouble())
        played.headers.insert("Retry-After"_L1, QString::number(seconds.toInt()));
    return played;
}

} // namespace simulator
