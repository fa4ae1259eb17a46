#include "host/serviceavailability.h"

#include "host/circuitbreaker.h"
#include "host/config.h"

#include <QHash>
#include <QUrl>

#include <algorithm>
#include <mutex>

template class Singleton<ServiceAvailability>;

namespace {

using Clock = std::chrono::steady_clock;

QString nameOf(const QUrl &url)
{
    const auto isSecure = url.scheme() == QLatin1String("https");
    return QStringLiteral("%1://%2:%3")
        .arg(url.scheme(), url.host(), QString::number(url.port(isSecure ? 443 : 80)));
}

CircuitBreaker::Range configuredRange()
{
    const auto read = [](const QString &key, CircuitBreaker::Duration otherwise) {
        const auto count = static_cast<int>(otherwise.count());
        return CircuitBreaker::Duration(Singleton<Config>::instance()->getInt(key, count));
    };
    const CircuitBreaker::Range range;
    return {read(QStringLiteral("Http:retryFirst"), range.first),
            read(QStringLiteral("Http:retryMax"), range.longest)};
}

} // namespace

struct ServiceAvailability::Entry
{
    CircuitBreaker breaker{configuredRange()};
    Reach reach = Reach::Unknown;
    QDateTime unreachableSince;
    QDateTime lastAnswer;
    Clock::time_point leftAloneUntil;
};

struct ServiceAvailability::Entries
{
    mutable std::mutex mutex;
    QHash<QString, Entry> byName;
};

ServiceAvailability::ServiceAvailability()
    : entries(std::make_unique<Entries>())
{}

ServiceAvailability::~ServiceAvailability() = default;

std::chrono::milliseconds ServiceAvailability::patience(const QUrl &service,
                                                        std::chrono::milliseconds usual)
{
    const std::scoped_lock lock(entries->mutex);
    return entries->byName[nameOf(service)].breaker.patience(Clock::now(), usual);
}

void ServiceAvailability::note(const QUrl &service, Outcome outcome,
                               std::chrono::seconds retryAfter)
{
    const std::scoped_lock lock(entries->mutex);
    auto &entry = entries->byName[nameOf(service)];
    if (outcome == Outcome::Answered) {
        entry.breaker.noteAnswer();
        entry.reach = Reach::Reachable;
        entry.unreachableSince = {};
        entry.lastAnswer = QDateTime::currentDateTimeUtc();
        entry.leftAloneUntil =
            Clock::now() + std::clamp<std::chrono::seconds>(
                               retryAfter, std::chrono::seconds::zero(), longestRetryAfter);
        return;
    }
    if (outcome == Outcome::Unreachable)
        entry.breaker.noteFailure(Clock::now());
    else
        entry.breaker.noteNothing();
    entry.reach = Reach::Unreachable;
    if (entry.unreachableSince.isNull())
        entry.unreachableSince = QDateTime::currentDateTimeUtc();
}

ServiceAvailability::State ServiceAvailability::state(const QUrl &service) const
{
    using std::chrono::milliseconds;
    const std::scoped_lock lock(entries->mutex);
    const auto entry = entries->byName.constFind(nameOf(service));
    if (entry == entries->byName.constEnd())
        return {};
    const auto rest = std::chrono::ceil<milliseconds>(entry->leftAloneUntil - Clock::now());
    return {entry->reach, entry->unreachableSince, entry->lastAnswer,
            std::max(rest, milliseconds::zero())};
}

void ServiceAvailability::clear()
{
    const std::scoped_lock lock(entries->mutex);
    entries->byName.clear();
}
