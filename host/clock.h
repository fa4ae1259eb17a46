#pragma once

#include "host/export.h"

#include <QDateTime>

#include <chrono>

/// The clock of host and till; a test can set its time.
class HOST_EXPORT Clock
{
public:
    using Time = std::chrono::steady_clock::time_point;

    /// Replaces the system's time.
    struct Source
    {
        virtual ~Source() = default;
        virtual QDateTime now() = 0; ///< UTC.
        virtual Time steady() = 0;   ///< Never goes back.
    };

    /// The time of day in UTC, to the millisecond. It jumps when somebody sets the clock.
    static QDateTime now();
    /// For durations: it never jumps, and its zero has no meaning.
    static Time steady();

    /// Takes the time from `source`, which it does not own; null restores the system's time. For
    /// tests.
    static void setSource(Source *source);
};
