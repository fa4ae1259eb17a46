#pragma once

#include "host/circuitbreaker.h"
#include "host/export.h"
#include "host/singleton.h"

#include <QDateTime>

#include <chrono>
#include <mutex>

/// The state of the service that the process talks to.
///
/// Every `RestClient` reports to it. Usable from several threads.
class HOST_EXPORT ServiceAvailability
{
public:
    struct State
    {
        bool isAsked = false;       ///< Whether a request has been sent.
        QDateTime unreachableSince; ///< UTC time of the first failed exchange; null while the
                                    ///< service answers.
        /// The rest of the time that the service's Retry-After asked for; 0 without one.
        std::chrono::milliseconds retryAfter{0};
    };

    /// The outcome of an exchange.
    enum class Outcome {
        Answered,    ///< A complete answer, of any content.
        Broken,      ///< No complete answer, but a quick failure.
        Unreachable, ///< A time-out, or no connection.
    };

    /// A longer Retry-After counts as an hour.
    static constexpr std::chrono::hours longestRetryAfter{1};

    /// How long a sale's request sent now may wait for its answer, at most `usual`; 0 when it must
    /// be skipped. See CircuitBreaker; its range is set by "Http:retryFirst" and "Http:retryMax" in
    /// milliseconds. Call `note` after each request that is sent.
    [[nodiscard]] std::chrono::milliseconds patience(std::chrono::milliseconds usual);
    /// Records the outcome of an exchange and the answer's Retry-After.
    void note(Outcome outcome, std::chrono::seconds retryAfter = {});

    State state() const;
    /// Forgets the service; the next request gets the current settings.
    void clear();

private:
    static CircuitBreaker::Range configuredRange();

    mutable std::mutex mutex;
    CircuitBreaker breaker{configuredRange()};
    State known; ///< `retryAfter` is computed by `state`.
    CircuitBreaker::Time leftAloneUntil;
};

extern template class HOST_EXPORT Singleton<ServiceAvailability>;
