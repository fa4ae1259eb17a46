#include "benchmarks/chain/chain.h"

#include "benchmarks/chain/service.h"
#include "till/core/deliveryrhythm.h"

#include <host/circuitbreaker.h>

#include <deque>
#include <numeric>
#include <queue>
#include <random>

namespace chain {

namespace {

double inSeconds(Time::duration time)
{
    return std::chrono::duration<double>(time).count();
}

struct Till
{
    Till(const Scenario &scenario, unsigned seed)
        : random(seed)
        , rhythm(till::Backoff({}, chance(scenario.jitter, seed)))
    {}

    static till::Chance chance(bool jitter, unsigned seed)
    {
        if (!jitter)
            return [] { return 0.5; };
        return [random = std::minstd_rand(seed)]() mutable {
            return std::uniform_real_distribution()(random);
        };
    }

    std::minstd_rand random; ///< The times of its receipts.
    CircuitBreaker breaker{{}};
    till::DeliveryRhythm rhythm;
    till::Deliverer::Round round;
    Time roundBegan;
    std::deque<Time> queue; ///< When each message came.
    int putOffs = 0;        ///< Of the first message, on end.
    bool isIdle = true;
    bool hasCaughtUp = false;
};

enum class Step { Identify, Identified, Commit, Committed, Deliver, Delivered, Return };

struct Event
{
    Time at;
    long number; ///< Keeps events of one moment in their order.
    Step step;
    int till;
    Answer answer;
    Time::duration waited; ///< How long the receipt's cashier has waited.

    bool operator>(const Event &other) const
    {
        return std::tie(at, number) > std::tie(other.at, other.number);
    }
};

class Simulation
{
public:
    explicit Simulation(const Scenario &scenario)
        : scenario(scenario)
        , service(scenario)
        , returns(before + scenario.outage)
    {
        std::seed_seq seeds{scenario.seed};
        std::vector<unsigned> seedOf(scenario.tills);
        seeds.generate(seedOf.begin(), seedOf.end());
        for (const auto seed : seedOf)
            tills.emplace_back(scenario, seed);
    }

    Result run()
    {
        for (int i = 0; i < scenario.tills; ++i)
            scheduleReceipt(i);
        schedule(returns, Step::Return, 0);
        left = scenario.tills;
        while (left > 0 && events.top().at < returns + longestDrain) {
            const auto event = events.top();
            events.pop();
            now = event.at;
            take(event);
        }
        result.seconds = service.perSecond();
        result.seconds.resize(std::chrono::ceil<seconds>(now.time_since_epoch()).count());
        result.waitsAway = summary(waitsAway);
        result.waitsAfter = summary(waitsAfter);
        if (left == 0)
            result.emptyAfter = inSeconds(now - returns);
        return result;
    }

private:
    static constexpr milliseconds usualPatience{5'000};
    static constexpr seconds scanning{30}; ///< From the customer's card to the commit.

    void schedule(Time at, Step step, int till, Answer answer = {}, Time::duration waited = {})
    {
        events.push({at, ++number, step, till, answer, waited});
    }

    void scheduleReceipt(int till)
    {
        std::exponential_distribution pause(scenario.receiptsPerHour / 3'600.0);
        const std::chrono::duration<double> time(pause(tills[till].random));
        schedule(now + std::chrono::round<Time::duration>(time), Step::Identify, till);
    }

    void take(const Event &event)
    {
        auto &till = tills[event.till];
        switch (event.step) {
        case Step::Identify:
            scheduleReceipt(event.till);
            sell(event, Step::Identified);
            break;
        case Step::Identified:
            note(till, event.answer);
            if (now >= returns)
                ++(event.answer.fate == Fate::Served ? result.known : result.unknown);
            schedule(now + scanning, Step::Commit, event.till, {}, event.waited);
            break;
        case Step::Commit:
            sell(event, Step::Committed);
            break;
        case Step::Committed:
            note(till, event.answer);
            commit(event);
            break;
        case Step::Deliver:
            till.round = {};
            till.roundBegan = now;
            deliver(event.till);
            break;
        case Step::Delivered:
            note(till, event.answer);
            settle(event);
            break;
        case Step::Return:
            comeBack();
        }
    }

    /// Sends what the cashier waits for, if the breaker lets it.
    void sell(const Event &event, Step next)
    {
        const auto patience = tills[event.till].breaker.patience(now, usualPatience);
        const auto isSent = patience.count() > 0;
        const auto answer = isSent ? service.enter(now, patience) : Answer{Fate::NotSent, now};
        schedule(answer.at, next, event.till, answer, event.waited + (answer.at - now));
    }

    void note(Till &till, const Answer &answer)
    {
        if (answer.fate == Fate::InVain)
            till.breaker.noteFailure(now);
        else if (answer.fate != Fate::NotSent)
            till.breaker.noteAnswer();
    }

    void commit(const Event &event)
    {
        auto &till = tills[event.till];
        if (event.answer.fate != Fate::Served)
            till.queue.push_back(now);
        till.queue.push_back(now);
        if (service.isAway(now))
            waitsAway.push_back(inSeconds(event.waited));
        else if (now >= returns)
            waitsAfter.push_back(inSeconds(event.waited));
        if (std::exchange(till.isIdle, false))
            schedule(now, Step::Deliver, event.till);
    }

    void deliver(int index)
    {
        auto &till = tills[index];
        if (!till.queue.empty()) {
            const auto answer = service.enter(now, usualPatience);
            schedule(answer.at, Step::Delivered, index, answer);
            return;
        }
        (void)till.rhythm.after(till.round, {}, {});
        till.isIdle = true;
        if (now >= returns)
            catchUp(till);
    }

    void settle(const Event &event)
    {
        auto &till = tills[event.till];
        if (event.answer.fate == Fate::Served) {
            result.oldest = std::max(result.oldest, inSeconds(now - till.queue.front()));
            till.queue.pop_front();
            till.putOffs = 0;
            ++till.round.settled;
            if (till.rhythm.isCatchingUp())
                endRound(event.till, till::Deliverer::Outcome::Stopped, {});
            else
                deliver(event.till);
            return;
        }
        const auto isTurnedAway = event.answer.fate == Fate::TurnedAway;
        till.putOffs += isTurnedAway ? 1 : 0;
        result.mostPutOffs = std::max(result.mostPutOffs, till.putOffs);
        const auto isAsked = isTurnedAway && scenario.retryAfter;
        endRound(event.till, till::Deliverer::Outcome::Unreachable,
                 isAsked ? Service::longestWait : seconds(0));
    }

    void endRound(int index, till::Deliverer::Outcome outcome, milliseconds asked)
    {
        auto &till = tills[index];
        till.round.outcome = outcome;
        const auto took = std::chrono::ceil<milliseconds>(now - till.roundBegan);
        schedule(now + till.rhythm.after(till.round, took, asked).time, Step::Deliver, index);
    }

    void comeBack()
    {
        for (auto &till : tills) {
            result.backlog += static_cast<int>(till.queue.size());
            if (till.queue.empty())
                catchUp(till);
        }
        result.ideal = result.backlog / (scenario.requestsPerSecond() - scenario.usualLoad());
    }

    void catchUp(Till &till) { left -= std::exchange(till.hasCaughtUp, true) ? 0 : 1; }

    static Waits summary(std::vector<double> &waits)
    {
        if (waits.empty())
            return {};
        std::ranges::sort(waits);
        return {std::accumulate(waits.begin(), waits.end(), 0.0) / waits.size(),
                waits[waits.size() * 99 / 100], waits.back()};
    }

    const Scenario scenario;
    Service service;
    const Time returns;
    Time now;
    long number = 0;
    std::priority_queue<Event, std::vector<Event>, std::greater<>> events;
    std::vector<Till> tills;
    int left = 0; ///< Tills that have not caught up.
    std::vector<double> waitsAway;
    std::vector<double> waitsAfter;
    Result result;
};

} // namespace

Result simulate(const Scenario &scenario)
{
    return Simulation(scenario).run();
}

} // namespace chain
