#include "host/serviceavailability.h"

#include "host/config.h"

#include <QUrl>

#include <algorithm>

template class Singleton<ServiceAvailability>;

namespace {

using Clock = std::chrono::steady_clock;

QString nameOf(const QUrl &url)
{
    const auto isSecure = url.scheme() == QLatin1String("https");
    return QStringLiteral("%1://%2:%3")
        .arg(url.scheme(), url.host(), QString::number(url.port(isSecure ? 443 : 80)));
}

} // namespace

CircuitBreaker::Range ServiceAvailability::configuredRange()
{
    const auto read = [](const QString &key, CircuitBreaker::Duration otherwise) {
        const auto count = static_cast<int>(otherwise.count());
        return CircuitBreaker::Duration(Singleton<Config>::instance()->getInt(key, count));
    };
    const CircuitBreaker::Range range;
    return {read(QStringLiteral("Http:retryFirst"), range.first),
            read(QStringLiteral("Http:retryMax"), range.longest)};
}

std::chrono::milliseconds ServiceAvailability::patience(const QUrl &service,
                                                        std::chrono::milliseconds usual)
{
    const std::scoped_lock lock(mutex);
    return entries[nameOf(service)].breaker.patience(Clock::now(), usual);
}

void ServiceAvailability::note(const QUrl &service, Outcome outcome,
                               std::chrono::seconds retryAfter)
{
    const std::scoped_lock lock(mutex);
    auto &[breaker, state, leftAloneUntil] = entries[nameOf(service)];
    if (outcome == Outcome::Answered) {
        breaker.noteAnswer();
        state = {Reach::Reachable, {}, QDateTime::currentDateTimeUtc()};
        leftAloneUntil = Clock::now() +
                         std::clamp<std::chrono::seconds>(retryAfter, std::chrono::seconds::zero(),
                                                          longestRetryAfter);
        return;
    }
    if (outcome == Outcome::Unreachable)
        breaker.noteFailure(Clock::now());
    else
        breaker.noteNothing();
    state.reach = Reach::Unreachable;
    if (state.unreachableSince.isNull())
        state.unreachableSince = QDateTime::currentDateTimeUtc();
}

ServiceAvailability::State ServiceAvailability::state(const QUrl &service) const
{
    using std::chrono::milliseconds;
    const std::scoped_lock lock(mutex);
    const auto entry = entries.constFind(nameOf(service));
    if (entry == entries.constEnd())
        return {};
    auto state = entry->state;
    const auto rest = std::chrono::ceil<milliseconds>(entry->leftAloneUntil - Clock::now());
    state.retryAfter = std::max(rest, milliseconds::zero());
    return state;
}

void ServiceAvailability::clear()
{
    const std::scoped_lock lock(mutex);
    entries.clear();
}
