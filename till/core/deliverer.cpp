#include "till/core/deliverer.h"

#include "interface/interface.h"
#include "interface/ordermessage.h"

#include <host/dbqueuebroker.h>
#include <host/restclient.h>

#include <QJsonDocument>

#include <algorithm>
#include <array>

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
    return lmmindbox::ordermessage::queue;
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
            round.parked += answer.verdict == Verdict::Refused ? 1 : 0;
        }
    }
    lock.release();
    return round;
}

Deliverer::Answer Deliverer::send(const QueuedMessage &message)
{
    namespace words = lmmindbox::ordermessage;
    const auto method = message.message.value(words::method).toString();
    const auto payload = message.message.value(words::payload);
    if (!payload.isObject())
        return {Verdict::Refused, QStringLiteral("malformed message: no payload")};
    constexpr bool skipQueue = true;
    if (method == words::create)
        return judge(service.createAuthorizedOrder(payload.toObject(), skipQueue), message.id);
    if (method == words::change)
        return judge(service.changeOrderStatus(payload.toObject(), skipQueue), message.id);
    return {Verdict::Refused, QStringLiteral("malformed message: unknown method")};
}

Deliverer::Answer Deliverer::judge(const lmmindbox::OperationResult &result, qint64 message)
{
    if (result.success())
        return {Verdict::Accepted, {}};
    auto codes = QStringLiteral("HTTP code %1").arg(result.httpCode);
    if (result.transportCode != 0)
        codes += QStringLiteral(", transport code %1: %2")
                     .arg(QString::number(result.transportCode),
                          RestClient::transportErrorText(result.transportCode));
    // No JSON object: something between the till and the service has answered, or nothing at all.
    if (result.response.isEmpty())
        return {Verdict::NoAnswer, QStringLiteral("no answer of the service, %1").arg(codes)};
    if (isPutOff(result.httpCode, message))
        return {Verdict::NoAnswer,
                QStringLiteral("not now, %1: %2").arg(codes, compactAnswer(result.response))};
    return {Verdict::Refused, QStringLiteral("refused, HTTP code %1: %2")
                                  .arg(result.httpCode)
                                  .arg(compactAnswer(result.response))};
}

/// Whether the code says that the message itself is not to blame, which only too many of them in
/// answer to the same message refute. A wrong key must not park all that is waiting.
bool Deliverer::isPutOff(int httpCode, qint64 message)
{
    constexpr std::array codes{401, 403, 429}; // unauthorized, forbidden, too many requests
    constexpr int firstServerError = 500;
    if (httpCode < firstServerError &&
        std::find(codes.begin(), codes.end(), httpCode) == codes.end())
        return false;
    deferrals = message == deferredMessage ? deferrals + 1 : 1;
    deferredMessage = message;
    if (deferrals < mostDeferrals)
        return true;
    deferredMessage = 0;
    return false;
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
