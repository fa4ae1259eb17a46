#include "till/core/deliverer.h"

#include "till/core/answertext.h"
#include "till/core/unstoredmessages.h"

#include "interface/interface.h"
#include "interface/ordermessage.h"

#include <host/dbqueuebroker.h>
#include <host/restclient.h>

#include <log4qt/logger.h>
#include <log4qt/logmanager.h>

#include <QFileInfo>

#include <algorithm>
#include <array>

namespace till {

namespace {

/// Whether the code says that the message itself is not to blame. A wrong key must not park all
/// that is waiting.
bool blamesSomethingElse(int httpCode)
{
    constexpr std::array codes{401, 403, 429}; // unauthorized, forbidden, too many requests
    constexpr int firstServerError = 500;
    return httpCode >= firstServerError ||
           std::find(codes.begin(), codes.end(), httpCode) != codes.end();
}

void logParked(const QueuedMessage &message, const QString &reason)
{
    static const auto *const logger = Log4Qt::LogManager::logger(QStringLiteral("till.delivery"));
    logger->error(QStringLiteral("message %1 is parked: %2"), message.id, reason);
}

} // namespace

QString loyaltyQueue()
{
    return lmmindbox::ordermessage::queue;
}

Deliverer::Deliverer(DBQueueBroker &broker, lmmindbox::Interface &service)
    : broker(broker)
    , service(service)
    , lock(QFileInfo(broker.file()).absolutePath())
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
    auto round = deliverAll(isStopped);
    if (!removeAccepted()) {
        error = broker.lastError();
        round.outcome = Outcome::Unusable;
    }
    lock.release();
    return round;
}

Deliverer::Round Deliverer::deliverAll(const std::function<bool()> &isStopped)
{
    Round round;
    for (;;) {
        if (isStopped())
            return {Outcome::Stopped, round.settled, round.parked};
        const auto message =
            broker.next(loyaltyQueue(), accepted.isEmpty() ? 0 : accepted.constLast());
        error = broker.lastError();
        if (!message && error.isEmpty() && !accepted.isEmpty()) {
            // A message put back meanwhile stands before these.
            if (removeAccepted())
                continue;
            error = broker.lastError();
        }
        if (!message) {
            round.outcome = error.isEmpty() ? Outcome::Emptied : Outcome::Unusable;
            return round;
        }
        const auto answer = send(*message);
        if (!settle(*message, answer)) {
            error = broker.lastError();
            round.outcome = Outcome::Unusable;
            return round;
        }
        if (!goesOn(round, answer))
            return round;
    }
}

/// Counts what became of a message. \return Whether the next one may follow.
bool Deliverer::goesOn(Round &round, const Answer &answer)
{
    if (answer.verdict == Verdict::NoAnswer || answer.verdict == Verdict::PutOff) {
        error = answer.reason;
        round.outcome = Outcome::Unreachable;
        return false;
    }
    ++round.settled;
    round.parked += answer.verdict == Verdict::Refused ? 1 : 0;
    return true;
}

Deliverer::Round Deliverer::deliverUnstored(UnstoredMessages &messages,
                                            const std::function<bool()> &isStopped)
{
    Round round;
    while (const auto message = messages.first()) {
        if (isStopped())
            return {Outcome::Stopped, round.settled, round.parked};
        const auto answer = send(*message);
        if (!goesOn(round, answer))
            return round;
        if (answer.verdict == Verdict::Accepted) {
            messages.remove(message->id);
        } else {
            logParked(*message, answer.reason);
            messages.park(message->id, answer.reason);
        }
    }
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
        return judge(service.createAuthorizedOrder(payload.toObject(), skipQueue),
                     message.deferrals);
    if (method == words::change)
        return judge(service.changeOrderStatus(payload.toObject(), skipQueue), message.deferrals);
    return {Verdict::Refused, QStringLiteral("malformed message: unknown method")};
}

Deliverer::Answer Deliverer::judge(const lmmindbox::OperationResult &result, int deferralsBefore)
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
    const auto answer = answerText(result.response);
    // Only too many of these in answer to the same message say that it is to blame after all.
    if (blamesSomethingElse(result.httpCode) && deferralsBefore + 1 < mostDeferrals)
        return {Verdict::PutOff, QStringLiteral("not now, %1: %2").arg(codes, answer)};
    return {Verdict::Refused, QStringLiteral("refused, %1: %2").arg(codes, answer)};
}

/// Keeps what has become of a message. \return Whether the queue's file could be written; a message
/// that somebody has parked or removed meanwhile needs no more.
bool Deliverer::settle(const QueuedMessage &message, const Answer &answer)
{
    if (answer.verdict == Verdict::Accepted) {
        if (accepted.isEmpty())
            firstAccepted = std::chrono::steady_clock::now();
        accepted.append(message.id);
        const auto isFull = accepted.size() >= groupSize ||
                            std::chrono::steady_clock::now() - firstAccepted >= groupTime;
        return !isFull || removeAccepted();
    }
    if (answer.verdict == Verdict::Refused) {
        logParked(message, answer.reason);
        return broker.park(message.id, answer.reason) || broker.isGone();
    }
    const auto deferrals = message.deferrals + (answer.verdict == Verdict::PutOff ? 1 : 0);
    return broker.noteFailure(message.id, answer.reason, deferrals) || broker.isGone();
}

bool Deliverer::removeAccepted()
{
    if (accepted.isEmpty())
        return true;
    if (!broker.removeAll(accepted))
        return false;
    accepted.clear();
    return true;
}

} // namespace till
