#include "till/core/deliverer.h"

#include "interface/interface.h"
#include "interface/ordermessage.h"

#include <host/clock.h>
#include <host/restclient.h>
#include <host/serviceavailability.h>

#include <log4qt/logger.h>
#include <log4qt/logmanager.h>

#include <QScopeGuard>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace till {

namespace {

using std::chrono::milliseconds;

const Log4Qt::Logger &logger()
{
    static const auto *const delivery = Log4Qt::LogManager::logger(u"till.delivery"_s);
    return *delivery;
}

/// Whether the code blames something other than the message. A wrong key must not park the whole
/// queue.
bool blamesSomethingElse(int httpCode)
{
    constexpr std::array codes{401, 403, 429}; // unauthorized, forbidden, too many requests
    constexpr int firstServerError = 500;
    return httpCode >= firstServerError ||
           std::find(codes.begin(), codes.end(), httpCode) != codes.end();
}

/// Whether the service is overloaded: too many requests, service unavailable.
bool saysNotNow(int httpCode)
{
    return httpCode == 429 || httpCode == 503;
}

} // namespace

Deliverer::Deliverer(Store &store, const QString &dataDirectory, const BackoffRange &range)
    : store(store)
    , lock(lockFile(dataDirectory))
    , pace(range)
{}

Deliverer::~Deliverer() = default;

QString Deliverer::lockFile(const QString &dataDirectory)
{
    return dataDirectory + "/deliver.lock"_L1;
}

Deliverer::Step Deliverer::step()
{
    auto next = store.nextMessage();
    auto held = tl::expected<void, QString>();
    // A message in memory needs no lock: it belongs to this process.
    if (next && *next && (*next)->id > 0 && !(held = lock.acquire()))
        next = store.nextMessage(true);
    if (!next)
        return fail(Outcome::Unreadable, next.error(), pace.afterFailure());
    if (*next)
        return send(**next);
    if (!held && !lock.holder())
        return fail(Outcome::Unreadable, held.error(), pace.afterFailure());
    if (!held)
        return fail(Outcome::Busy, held.error(), idleTime);
    pace.noteEmpty();
    return {Outcome::Empty, idleTime};
}

Deliverer::Step Deliverer::send(const QueuedMessage &message)
{
    const auto begin = Clock::steady();
    const auto answer = ask(message);
    const auto took = std::chrono::ceil<milliseconds>(Clock::steady() - begin);
    store.settle(message, answer.verdict, answer.reason);
    switch (answer.verdict) {
    case Verdict::Refused:
        logger().error(u"message %1 is parked: %2"_s, message.id, answer.reason);
        [[fallthrough]];
    case Verdict::Accepted:
        return {Outcome::Settled, pace.afterAnswer(took), answer.verdict == Verdict::Refused};
    case Verdict::PutOff:
    case Verdict::NoAnswer:
        break;
    }
    const auto asked = Singleton<ServiceAvailability>::instance()->state().retryAfter;
    return fail(Outcome::Unreachable, answer.reason,
                answer.isTurnedAway ? pace.afterRefusal(asked) : pace.afterFailure());
}

Deliverer::Answer Deliverer::ask(const QueuedMessage &message)
{
    namespace words = lmmindbox::ordermessage;
    RestClient::setPurpose(RestClient::Purpose::Delivery);
    const auto asBefore = qScopeGuard([] { RestClient::setPurpose(RestClient::Purpose::Sale); });
    if (!service)
        service = std::make_unique<lmmindbox::Interface>();
    const auto method = message.message.value(words::method).toString();
    const auto payload = message.message.value(words::payload);
    if (!payload.isObject())
        return {Verdict::Refused, u"malformed message: no payload"_s};
    constexpr bool skipQueue = true;
    if (method == words::create)
        return judge(service->createAuthorizedOrder(payload.toObject(), skipQueue),
                     message.putOffSince);
    if (method == words::change)
        return judge(service->changeOrderStatus(payload.toObject(), skipQueue),
                     message.putOffSince);
    return {Verdict::Refused, u"malformed message: unknown method"_s};
}

Deliverer::Answer Deliverer::judge(const lmmindbox::OperationResult &result,
                                   const QDateTime &putOffSince)
{
    if (result.success())
        return {Verdict::Accepted, {}};
    auto codes = u"HTTP code %1"_s.arg(result.httpCode);
    if (result.transportCode != 0)
        codes +=
            u", transport code %1: %2"_s.arg(QString::number(result.transportCode),
                                             RestClient::transportErrorText(result.transportCode));
    // Without a JSON object nobody answered, or something between the till and the service did.
    if (result.response.isEmpty())
        return {Verdict::NoAnswer, u"no answer of the service, %1"_s.arg(codes),
                saysNotNow(result.httpCode)};
    const auto answer = answerText(result.response);
    const auto isTooLong = putOffSince.isValid() &&
                           putOffSince.msecsTo(Clock::now()) >= milliseconds(longestPutOff).count();
    if (blamesSomethingElse(result.httpCode) && !isTooLong)
        return {Verdict::PutOff, u"not now, %1: %2"_s.arg(codes, answer),
                saysNotNow(result.httpCode)};
    return {Verdict::Refused, u"refused, %1: %2"_s.arg(codes, answer)};
}

void Deliverer::deliverUnsaved()
{
    auto outcome = Outcome::Settled;
    while (outcome == Outcome::Settled) {
        const auto next = store.nextMessage(true);
        outcome = next && *next ? send(**next).outcome : Outcome::Empty;
    }
}

void Deliverer::run(const std::function<void()> &whenIdle)
{
    int delivered = 0;
    for (auto isStopped = false; !isStopped;) {
        const auto done = step();
        delivered += done.outcome == Outcome::Settled ? 1 : 0;
        const auto isIdle = done.outcome == Outcome::Empty || done.outcome == Outcome::Busy;
        if (done.outcome == Outcome::Empty)
            whenIdle();
        if (isIdle && delivered > 0)
            logger().info(u"delivered %1 messages"_s, std::exchange(delivered, 0));
        isStopped = rest(done.rest, isIdle);
    }
}

Deliverer::Step Deliverer::fail(Outcome outcome, const QString &reason, milliseconds rest)
{
    if (outcome != Outcome::Busy)
        logger().warn(u"%1; the next try comes in %2 ms"_s, reason,
                      static_cast<qint64>(rest.count()));
    return {outcome, rest, false, reason};
}

/// \return Whether the deliverer was stopped.
bool Deliverer::rest(milliseconds time, bool isWakeable)
{
    std::unique_lock guard(mutex);
    condition.wait_for(guard, time, [&] { return stopped || (isWakeable && woken); });
    woken = false;
    return stopped;
}

void Deliverer::set(bool &flag)
{
    {
        const std::scoped_lock guard(mutex);
        flag = true;
    }
    condition.notify_one();
}

} // namespace till
