#pragma once

#include "host/circuitbreaker.h"
#include "host/export.h"
#include "host/singleton.h"

#include <QDateTime>
#include <QHash>
#include <QString>

#include <chrono>
#include <mutex>

class QUrl;

/// What the process knows of the services it talks to, one entry for scheme, host and port.
///
/// Fed by every `RestClient`; usable from several threads.
class HOST_EXPORT ServiceAvailability
{
public:
    enum class Reach { Unknown, Reachable, Unreachable };

    struct State
    {
        Reach reach = Reach::Unknown;
        QDateTime unreachableSince; ///< UTC, of the first exchange without an answer; else null.
        QDateTime lastAnswer;       ///< UTC; null before the first one.
        /// How much longer the service has asked to be left alone; 0 when it has not.
        std::chrono::milliseconds retryAfter{0};
    };

    /// How an exchange ended.
    enum class Outcome {
        Answered,    ///< By a complete answer, whatever it says.
        Broken,      ///< With no complete answer, but without a wait in vain.
        Unreachable, ///< By a time-out, or without a connection.
    };

    /// A service wants to be left alone for an hour at most, whatever it says.
    static constexpr std::chrono::hours longestRetryAfter{1};

    /// How long a request may be waited for that somebody waits for, `usual` at most; 0 when it is
    /// not to be sent. It is not for a time after the service let somebody wait in vain:
    /// "Http:retryFirst" milliseconds first, then twice as long with each failed trial, at most
    /// "Http:retryMax"; always with a first time of 0. Each request that is sent is to be followed
    /// by `note`.
    [[nodiscard]] std::chrono::milliseconds patience(const QUrl &service,
                                                     std::chrono::milliseconds usual);
    /// Says how an exchange ended, and how long the answer asked for patience.
    void note(const QUrl &service, Outcome outcome, std::chrono::seconds retryAfter = {});

    /// What is known of the service; `Unknown` for one that nobody has asked.
    State state(const QUrl &service) const;
    /// Forgets all services, and reads the settings anew for the next ones.
    void clear();

private:
    struct Entry
    {
        CircuitBreaker breaker{configuredRange()};
        State state; ///< But for `retryAfter`.
        CircuitBreaker::Time leftAloneUntil;
    };
    static CircuitBreaker::Range configuredRange();

    mutable std::mutex mutex;
    QHash<QString, Entry> entries; ///< By scheme, host and port.
};

extern template class HOST_EXPORT Singleton<ServiceAvailability>;
