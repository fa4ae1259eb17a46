#include "till/core/deliveryloop.h"

#include <host/config.h>
#include <host/serviceavailability.h>

#include <log4qt/logger.h>
#include <log4qt/logmanager.h>

#include <QUrl>

#include <utility>

namespace till {

namespace {

using Clock = std::chrono::steady_clock;

const Log4Qt::Logger &logger()
{
    static const auto *const delivery = Log4Qt::LogManager::logger(QStringLiteral("till.delivery"));
    return *delivery;
}

/// How much longer the service has asked to be left alone.
std::chrono::milliseconds askedPatience()
{
    const auto service = Singleton<Config>::instance()->getText(QStringLiteral("LmMindbox:url"));
    return Singleton<ServiceAvailability>::instance()->state(QUrl(service)).retryAfter;
}

} // namespace

DeliveryPause::~DeliveryPause() = default;

DeliveryLoop::DeliveryLoop(Deliverer &deliverer, const Backoff &backoff, DeliveryPause &pause)
    : deliverer(deliverer)
    , rhythm(backoff)
    , pause(pause)
{}

void DeliveryLoop::run()
{
    while (!pause.isStopped()) {
        const auto begin = Clock::now();
        const auto round = deliver();
        const auto took = std::chrono::ceil<std::chrono::milliseconds>(Clock::now() - begin);
        if (round.settled > 0)
            logger().info(QStringLiteral("settled %1 messages"), round.settled);
        const auto rest = rhythm.after(round, took, askedPatience());
        if (round.outcome == Deliverer::Outcome::Unreachable ||
            round.outcome == Deliverer::Outcome::Unusable)
            logger().warn(QStringLiteral("%1; the next try comes in %2 ms"), deliverer.lastError(),
                          static_cast<qint64>(rest.time.count()));
        if (round.outcome == Deliverer::Outcome::Emptied)
            whenIdle();
        pause.rest(rest.time, rest.isWakeable);
    }
}

bool DeliveryLoop::runOnce()
{
    auto round = deliver();
    while (round.outcome == Deliverer::Outcome::Busy && !pause.isStopped()) {
        pause.rest(DeliveryRhythm::idleTime, true);
        round = deliver();
    }
    return round.outcome == Deliverer::Outcome::Emptied && round.parked == 0;
}

Deliverer::Round DeliveryLoop::deliver()
{
    auto round = deliverer.deliver(roundsEnd());
    if (!unstored || round.outcome == Deliverer::Outcome::Unreachable ||
        round.outcome == Deliverer::Outcome::Stopped)
        return round;
    const auto more = deliverer.deliverUnstored(*unstored, roundsEnd());
    round.settled += more.settled;
    round.parked += more.parked;
    if (round.outcome == Deliverer::Outcome::Emptied)
        round.outcome = more.outcome;
    return round;
}

std::function<bool()> DeliveryLoop::roundsEnd()
{
    return [this, hasSent = false]() mutable {
        beforeEach();
        return pause.isStopped() || (std::exchange(hasSent, true) && rhythm.isCatchingUp());
    };
}

} // namespace till
