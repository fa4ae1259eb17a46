#include "till/core/deliveryloop.h"

#include <host/config.h>
#include <host/serviceavailability.h>

#include <log4qt/logger.h>
#include <log4qt/logmanager.h>

#include <QUrl>

namespace till {

namespace {

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
        const auto round = deliver();
        if (round.settled > 0)
            logger().info(QStringLiteral("settled %1 messages"), round.settled);
        const auto rest = rhythm.after(round, askedPatience());
        if (round.outcome == Deliverer::Outcome::Unreachable ||
            round.outcome == Deliverer::Outcome::Unusable)
            logger().warn(QStringLiteral("%1; the next try comes in %2 ms"), deliverer.lastError(),
                          static_cast<qint64>(rest.time.count()));
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
    const auto isStopped = [this] {
        beforeEach();
        return pause.isStopped();
    };
    auto round = deliverer.deliver(isStopped);
    if (!unstored || round.outcome == Deliverer::Outcome::Unreachable)
        return round;
    const auto more = deliverer.deliverUnstored(*unstored, isStopped);
    round.settled += more.settled;
    round.parked += more.parked;
    if (round.outcome == Deliverer::Outcome::Emptied)
        round.outcome = more.outcome;
    return round;
}

} // namespace till
