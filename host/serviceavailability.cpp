#include "host/serviceavailability.h"

#include "host/clock.h"
#include "host/config.h"

#include <algorithm>

using namespace Qt::StringLiterals;

template class Singleton<ServiceAvailability>;

CircuitBreaker::Range ServiceAvailability::configuredRange()
{
    const auto read = [](const QString &key, CircuitBreaker::Duration otherwise) {
        const auto count = static_cast<int>(otherwise.count());
        return CircuitBreaker::Duration(Singleton<Config>::instance()->getInt(key, count));
    };
    const CircuitBreaker::Range range;
    return {read(u"Http:retryFirst"_s, range.first), read(u"Http:retryMax"_s, range.longest)};
}

std::chrono::milliseconds ServiceAvailability::patience(std::chrono::milliseconds usual)
{
    const std::scoped_lock lock(mutex);
    return breaker.patience(Clock::steady(), usual);
}

void ServiceAvailability::note(Outcome outcome, std::chrono::seconds retryAfter)
{
    const std::scoped_lock lock(mutex);
    known.isAsked = true;
    if (outcome == Outcome::Answered) {
        breaker.noteAnswer();
        known.unreachableSince = {};
        leftAloneUntil = Clock::steady() +
                         std::clamp<std::chrono::seconds>(retryAfter, std::chrono::seconds::zero(),
                                                          longestRetryAfter);
        return;
    }
    if (outcome == Outcome::Unreachable)
        breaker.noteFailure(Clock::steady());
    if (known.unreachableSince.isNull())
        known.unreachableSince = Clock::now();
}

ServiceAvailability::State ServiceAvailability::state() const
{
    using std::chrono::milliseconds;
    const std::scoped_lock lock(mutex);
    auto state = known;
    const auto rest = std::chrono::ceil<milliseconds>(leftAloneUntil - Clock::steady());
    state.retryAfter = std::max(rest, milliseconds::zero());
    return state;
}

void ServiceAvailability::clear()
{
    const std::scoped_lock lock(mutex);
    breaker = CircuitBreaker(configuredRange());
    known = {};
    leftAloneUntil = {};
}
