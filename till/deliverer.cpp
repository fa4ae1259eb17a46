#include "till/deliverer.h"

#include "interface/interface.h"

#include <host/dbqueuebroker.h>

#include <QJsonDocument>

namespace till {

namespace {

/// An answer as it is kept with a parked message: enough to see why it was refused.
QString compactAnswer(const QJsonObject &answer)
{
    constexpr qsizetype longest = 4096;
    const auto text = QString::fromUtf8(QJsonDocument(answer).toJson(QJsonDocument::Compact));
    return text.size() > longest ? text.left(longest) + QChar(0x2026) : text;
}

} // namespace

QString loyaltyQueue()
{
    return QStringLiteral("lmmindbox");
}

Deliverer::Deliverer(DBQueueBroker &broker, lmmindbox::Interface &service)
    : broker(broker)
    , service(service)
    , lock(broker.file() + QLatin1String(".lock"))
{}

Deliverer::Round Deliverer::deliver(const std::function<bool()> &isStopped)
{
    error.clear();
    switch (lock.acquire()) {
    case FileLock::State::Held:
        break;
    case FileLock::State::Busy:
        error = QStringLiteral("another deliverer is at work");
        return {Outcome::Busy};
    case FileLock::State::Unavailable:
        error = lock.lastError();
        return {Outcome::Unusable};
    }
    Round round;
    while (round.outcome == Outcome::Emptied) {
        if (isStopped()) {
            round.outcome = Outcome::Stopped;
            break;
        }
        const auto message = broker.first(loyaltyQueue());
        if (!message) {
            error = broker.lastError();
            if (!error.isEmpty())
                round.outcome = Outcome::Unusable;
            break;
        }
        const auto answer = send(*message);
        if (!settle(*message, answer)) {
            error = broker.lastError();
            round.outcome = Outcome::Unusable;
        } else if (answer.verdict == Verdict::NoAnswer) {
            error = answer.reason;
            round.outcome = Outcome::Unreachable;
        } else {
            ++round.settled;
        }
    }
    lock.release();
    return round;
}

Deliverer::Answer Deliverer::send(const QueuedMessage &message)
{
    const auto method = message.message.value(QLatin1String("method")).toString();
    const auto payload = message.message.value(QLatin1String("payload"));
    if (!payload.isObject())
        return {Verdict::Refused, QStringLiteral("malformed message: no payload")};
    constexpr bool skipQueue = true;
    if (method == QLatin1String("create"))
        return judge(service.createAuthorizedOrder(payload.toObject(), skipQueue), message.tries);
    if (method == QLatin1String("change"))
        return judge(service.changeOrderStatus(payload.toObject(), skipQueue), message.tries);
    return {Verdict::Refused, QStringLiteral("malformed message: unknown method")};
}

Deliverer::Answer Deliverer::judge(const lmmindbox::OperationResult &result, int tries)
{
    if (result.success())
        return {Verdict::Accepted, {}};
    const auto codes = QStringLiteral("HTTP code %1, transport code %2")
                           .arg(result.httpCode)
                           .arg(result.transportCode);
    // No JSON object: something between the till and the service has answered, or nothing at all.
    if (result.response.isEmpty())
        return {Verdict::NoAnswer, QStringLiteral("no answer of the service, %1").arg(codes)};
    constexpr int tooManyRequests = 429;
    constexpr int firstServerError = 500;
    const auto isBusy = result.httpCode == tooManyRequests ||
                        (result.httpCode >= firstServerError && tries < mostServerErrors);
    if (isBusy)
        return {Verdict::NoAnswer, QStringLiteral("the service cannot answer now, %1").arg(codes)};
    return {Verdict::Refused, QStringLiteral("refused, HTTP code %1: %2")
                                  .arg(result.httpCode)
                                  .arg(compactAnswer(result.response))};
}

bool Deliverer::settle(const QueuedMessage &message, const Answer &answer)
{
    switch (answer.verdict) {
    case Verdict::Accepted:
        return broker.remove(message.id);
    case Verdict::Refused:
        return broker.park(message.id, answer.reason);
    case Verdict::NoAnswer:
        return broker.noteFailure(message.id, answer.reason);
    }
    return false;
}

} // namespace till
