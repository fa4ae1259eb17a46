// Simulates a chain of tills after an outage of the service, in virtual time. Each till uses the
// delivery's real Pace and the host's real CircuitBreaker. Like the simulator with --capacity, the
// service takes one request after the other and turns away a request that would wait too long.

#include "till/core/pace.h"

#include <host/circuitbreaker.h>

#include <QCommandLineParser>
#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <numeric>
#include <queue>
#include <random>
#include <tuple>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;
using std::chrono::milliseconds;
using std::chrono::seconds;
using Time = std::chrono::steady_clock::time_point; // virtual; begins at the default value

namespace {

constexpr seconds longestDrain{21'600}; // the simulation ends here at the latest
constexpr seconds usualBusiness{3'600}; // before the outage
constexpr milliseconds usualPatience{5'000};

struct Scenario
{
    int tills = 10'000;
    int receiptsPerHour = 30;
    int outage = 7'200;
    int waiting = 0;
    int capacity = 0;
    int answer = 20;
    int longestWait = 2'000;
    int silence = 5'000;
    int scanning = 30;

    /// Requests a second without an outage: each receipt needs look-up, letter, order and status.
    double usualLoad() const { return tills * (receiptsPerHour * 4 / 3'600.0); }
};

constexpr std::tuple<QLatin1String, int Scenario::*, QLatin1String> options[] = {
    {"tills"_L1, &Scenario::tills, "number of tills"_L1},
    {"receipts-per-hour"_L1, &Scenario::receiptsPerHour, "of one till, at random times"_L1},
    {"outage"_L1, &Scenario::outage, "seconds without the service"_L1},
    {"waiting"_L1, &Scenario::waiting, "messages of each till at the start, without an outage"_L1},
    {"capacity"_L1, &Scenario::capacity, "requests a second; 0: twice the usual load"_L1},
    {"answer"_L1, &Scenario::answer, "milliseconds of an answer without load"_L1},
    {"longest-wait"_L1, &Scenario::longestWait, "in the queue, in milliseconds; 0: no queue"_L1},
    {"silence"_L1, &Scenario::silence, "milliseconds until a request fails in the outage"_L1},
    {"scanning"_L1, &Scenario::scanning, "seconds from the customer's card to the commit"_L1},
};

size_t secondOf(Time time)
{
    return std::chrono::floor<seconds>(time.time_since_epoch()).count();
}

enum Fate { Served, TurnedAway, InVain, NotSent };

struct Answer
{
    Fate fate = NotSent;
    Time at; ///< When the answer arrives or the till gives up.
};

struct Service
{
    explicit Service(const Scenario &scenario)
        : scenario(scenario)
        , returns(scenario.waiting > 0 ? seconds(0) : usualBusiness + seconds(scenario.outage))
    {}

    Answer enter(Time now, milliseconds patience)
    {
        perSecond.resize(secondOf(now) + 1);
        const auto answer = answerTo(now, patience);
        ++perSecond.back().at(answer.fate);
        return answer;
    }

    Answer answerTo(Time now, milliseconds patience)
    {
        if (now >= Time(usualBusiness) && now < returns)
            return {InVain, now + std::min(milliseconds(scenario.silence), patience)};
        const milliseconds usual(scenario.answer);
        if (scenario.longestWait == 0) // it limits the rate without a queue
            return {perSecond.back()[Served] < scenario.capacity ? Served : TurnedAway,
                    now + usual};
        const auto begin = std::max(nextTurn, now);
        if (begin - now > milliseconds(scenario.longestWait))
            return {TurnedAway, now + usual};
        nextTurn = begin + Time::duration(seconds(1)) / scenario.capacity;
        const auto isInTime = nextTurn + usual - now <= patience;
        return {isInTime ? Served : InVain, isInTime ? nextTurn + usual : now + patience};
    }

    const Scenario scenario;
    const Time returns;
    Time nextTurn;
    std::vector<std::array<int, 3>> perSecond; ///< Requests of each second, by fate.
};

struct Till
{
    explicit Till(unsigned seed)
        : random(seed)
        , pace({}, [own = std::minstd_rand(seed)]() mutable {
            return std::uniform_real_distribution()(own);
        })
    {}

    std::minstd_rand random; ///< The times of its receipts.
    CircuitBreaker breaker{{}};
    till::Pace pace;
    int waiting = 0; ///< Messages in its queue.
    bool isIdle = true;
    bool hasCaughtUp = false;
};

enum class Step { SwitchOn, Identify, Identified, Lettered, Commit, Committed, Deliver, Delivered };

struct Event
{
    Time at;
    Step step;
    int till;
    Answer answer;
    Time::duration waited; ///< The wait of the receipt's cashier, or of the delivery.

    bool operator>(const Event &other) const { return at > other.at; }
};

struct Simulation
{
    explicit Simulation(const Scenario &scenario)
        : service(scenario)
        , backlog(scenario.tills * scenario.waiting)
        , left(scenario.tills)
    {
        std::minstd_rand seeds;
        for (int till = 0; till < scenario.tills; ++till) {
            tills.emplace_back(seeds()).waiting = scenario.waiting;
            schedule(Time(seconds(60) * till / scenario.tills), Step::SwitchOn, till);
        }
    }

    void run()
    {
        while (left > 0 && events.top().at < service.returns + longestDrain) {
            const auto event = events.top();
            events.pop();
            if (now < service.returns && event.at >= service.returns)
                comeBack();
            now = event.at;
            take(event);
        }
    }

    void schedule(Time at, Step step, int till, Answer answer = {}, Time::duration waited = {})
    {
        events.push({at, step, till, answer, waited});
    }

    void scheduleReceipt(int till)
    {
        std::exponential_distribution pause(service.scenario.receiptsPerHour / 3'600.0);
        const std::chrono::duration<double> time(pause(tills[till].random));
        schedule(now + std::chrono::round<Time::duration>(time), Step::Identify, till);
    }

    void take(const Event &event)
    {
        auto &till = tills[event.till];
        const auto fate = event.answer.fate;
        if (fate == InVain)
            till.breaker.noteFailure(now);
        else if (fate != NotSent)
            till.breaker.noteAnswer();
        switch (event.step) {
        case Step::SwitchOn:
            scheduleReceipt(event.till);
            return deliver(event.till);
        case Step::Identify:
            scheduleReceipt(event.till);
            return ask(event, Step::Identified);
        case Step::Identified:
            if (fate == Served)
                return ask(event, Step::Lettered);
            [[fallthrough]];
        case Step::Lettered:
            return schedule(now + seconds(service.scenario.scanning), Step::Commit, event.till, {},
                            event.waited);
        case Step::Commit:
            return ask(event, Step::Committed);
        case Step::Committed:
            if (now >= service.returns)
                waits.push_back(std::chrono::duration<double>(event.waited).count());
            till.waiting += fate == Served ? 1 : 2; // the status alone, or the order too
            if (!till.isIdle)
                return;
            [[fallthrough]];
        case Step::Deliver:
            return deliver(event.till);
        case Step::Delivered:
            return settle(event);
        }
    }

    /// Sends a cashier's request unless the breaker blocks it.
    void ask(const Event &event, Step next)
    {
        const auto patience = tills[event.till].breaker.patience(now, usualPatience);
        const auto answer =
            patience.count() > 0 ? service.enter(now, patience) : Answer{NotSent, now};
        schedule(answer.at, next, event.till, answer, event.waited + (answer.at - now));
    }

    void deliver(int index)
    {
        auto &till = tills[index];
        till.isIdle = till.waiting == 0;
        if (till.isIdle) {
            till.pace.noteEmpty();
            return catchUp(till);
        }
        const auto answer = service.enter(now, usualPatience);
        schedule(answer.at, Step::Delivered, index, answer, answer.at - now);
    }

    void settle(const Event &event)
    {
        auto &till = tills[event.till];
        const auto fate = event.answer.fate;
        const auto took = std::chrono::ceil<milliseconds>(event.waited);
        till.waiting -= fate == Served ? 1 : 0;
        const auto rest = fate == Served ? till.pace.afterAnswer(took)
                          : fate == TurnedAway
                              ? till.pace.afterRefusal(milliseconds(service.scenario.longestWait))
                              : till.pace.afterFailure();
        schedule(now + rest, Step::Deliver, event.till);
    }

    void comeBack()
    {
        now = service.returns;
        for (auto &till : tills) {
            backlog += till.waiting;
            catchUp(till);
        }
    }

    void catchUp(Till &till)
    {
        if (now >= service.returns && till.waiting == 0 && !std::exchange(till.hasCaughtUp, true))
            --left;
    }

    Service service;
    Time now;
    int backlog;               ///< Messages waiting when the service comes back.
    std::vector<double> waits; ///< The cashiers' waits since then, in seconds by receipt.
    std::priority_queue<Event, std::vector<Event>, std::greater<>> events;
    std::vector<Till> tills;
    int left; ///< Tills with messages still waiting.
};

void print(const QString &name, const Scenario &scenario, Simulation &chain)
{
    double requests = 0;
    double wasted = 0;
    int busiest = 0;
    int above = 0;
    int longestAbove = 0;
    const auto &curve = chain.service.perSecond;
    for (auto i = secondOf(chain.service.returns); i < curve.size(); ++i) {
        const auto &[served, turnedAway, inVain] = curve[i];
        const auto all = served + turnedAway + inVain;
        requests += all;
        wasted += turnedAway + inVain;
        busiest = std::max(busiest, all);
        above = 2 * all > 3 * scenario.capacity ? above + 1 : 0;
        longestAbove = std::max(longestAbove, above);
    }
    auto &waits = chain.waits;
    waits.resize(std::max<size_t>(waits.size(), 1));
    std::ranges::sort(waits);
    std::printf("| %s | %.0f%s | %.0f | %d | %.1f × | %.1f%% | %.1f, %.1f |\n", qPrintable(name),
                std::chrono::duration<double>(chain.now - chain.service.returns).count(),
                chain.left == 0 ? "" : ", not empty",
                chain.backlog / (scenario.capacity - scenario.usualLoad()), longestAbove,
                1.0 * busiest / scenario.capacity, 100 * wasted / requests,
                std::accumulate(waits.begin(), waits.end(), 0.0) / waits.size(),
                waits[waits.size() * 99 / 100]);
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Simulates a chain of tills after an outage: a row of the table in docs/scale.md."_s);
    parser.addHelpOption();
    parser.addPositionalArgument(u"NAME"_s, u"Name of the row."_s);
    parser.addOption({u"curve"_s, u"Writes the requests of each second."_s, u"file"_s});
    Scenario scenario;
    for (const auto &[name, value, meaning] : options)
        parser.addOption({name, meaning, u"number"_s, QString::number(scenario.*value)});
    parser.process(application);
    auto isValid = true;
    for (const auto &[name, value, meaning] : options) {
        auto isNumber = false;
        scenario.*value = parser.value(name).toInt(&isNumber);
        isValid = isValid && isNumber && scenario.*value >= 0;
    }
    const auto load = scenario.usualLoad();
    if (scenario.capacity == 0)
        scenario.capacity = static_cast<int>(2 * load) + 1;
    if (!isValid || load <= 0 || scenario.capacity <= load) {
        std::fputs("chain: expected numbers, and a --capacity above the usual load\n", stderr);
        return 2;
    }
    Simulation chain(scenario);
    chain.run();
    print(parser.positionalArguments().value(0), scenario, chain);
    std::ofstream curve(parser.value(u"curve"_s).toStdString());
    auto second = -static_cast<int>(secondOf(chain.service.returns));
    for (const auto &[served, turnedAway, inVain] : chain.service.perSecond)
        curve << second++ << ',' << served << ',' << turnedAway << ',' << inVain << '\n';
    return 0;
}
