#include "host/clock.h"

#include <atomic>

namespace {

std::atomic<Clock::Source *> substitute = nullptr;

} // namespace

QDateTime Clock::now()
{
    auto *const source = substitute.load();
    return source ? source->now() : QDateTime::currentDateTimeUtc();
}

Clock::Time Clock::steady()
{
    auto *const source = substitute.load();
    return source ? source->steady() : std::chrono::steady_clock::now();
}

void Clock::setSource(Source *source)
{
    substitute = source;
}
