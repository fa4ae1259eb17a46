#pragma once

#include "benchmarks/chain/chain.h"

#include <algorithm>

namespace chain {

using Time = std::chrono::steady_clock::time_point; ///< Virtual; the default is the beginning.

enum class Fate { Served, TurnedAway, InVain, NotSent };

struct Answer
{
    Fate fate;
    Time at; ///< When the till has it or gives it up.
};

/// A service that bears so many requests a second, one after the other, as the simulator with
/// --capacity: what comes faster waits, and is turned away when the wait would be too long.
class Service
{
public:
    static constexpr seconds longestWait{2}; ///< Also what it asks for with Retry-After.

    explicit Service(const Scenario &scenario)
        : turn(std::chrono::duration_cast<Time::duration>(seconds(1)) /
               scenario.requestsPerSecond())
        , goes(before)
        , returns(before + scenario.outage)
        , silence(scenario.silence)
        , record((before + scenario.outage + longestDrain).count() + 60)
    {}

    bool isAway(Time now) const { return now >= goes && now < returns; }

    Answer enter(Time now, milliseconds patience)
    {
        auto &second = record.at(std::chrono::floor<seconds>(now.time_since_epoch()).count());
        if (isAway(now)) {
            ++second.inVain;
            return {Fate::InVain, now + std::min(silence, patience)};
        }
        const auto begin = std::max(nextTurn, now);
        if (begin - now > longestWait) {
            ++second.turnedAway;
            return {Fate::TurnedAway, now + network};
        }
        nextTurn = begin + turn;
        if (nextTurn + network - now > patience) {
            ++second.inVain;
            return {Fate::InVain, now + patience};
        }
        ++second.served;
        return {Fate::Served, nextTurn + network};
    }

    const std::vector<Second> &perSecond() const { return record; }

private:
    static constexpr milliseconds network{20};

    const Time::duration turn;
    const Time goes;
    const Time returns;
    const milliseconds silence;
    Time nextTurn;
    std::vector<Second> record;
};

} // namespace chain
