// Tills with everything real about them but the goods, each a process of its own because breaker
// and settings belong to a process: the check of the simulated chain.

#include "benchmarks/chain/chain.h"
#include "till/core/backgrounddelivery.h"
#include "till/core/deliverer.h"
#include "till/core/unstoredmessages.h"

#include "interface/interface.h"

#include <host/config.h>
#include <host/dbqueuebroker.h>
#include <host/restclient.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QJsonArray>
#include <QJsonObject>
#include <QTemporaryDir>

#include <array>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <deque>
#include <random>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace Qt::StringLiterals;
using Clock = std::chrono::steady_clock;
using std::chrono::seconds;

namespace {

constexpr int mostSeconds = 1'800;
constexpr int mostTills = 1'000;

/// What the processes count together.
struct Counts
{
    std::array<std::array<std::atomic<int>, 3>, mostSeconds> requests; ///< As chain::Second.
    std::array<std::atomic<int>, mostTills> waiting; ///< Messages in each till's queue.
};

int secondSince(Clock::time_point begin)
{
    const auto passed = std::chrono::floor<seconds>(Clock::now() - begin).count();
    return std::min(static_cast<int>(passed), mostSeconds - 1);
}

/// Counts what a client of each thread sends.
class CountingClient : public RestClient
{
public:
    CountingClient(Counts &counts, Clock::time_point begin)
        : counts(counts)
        , begin(begin)
    {
        MockFactory<RestClient>::mocked = this;
    }
    void setTimeout(qint64 milliseconds) override { ofThread().setTimeout(milliseconds); }
    void setLogger(const Log4Qt::Logger *logger) override { ofThread().setLogger(logger); }
    http::Response getResponse() const override { return ofThread().getResponse(); }
    void send(const QUrl &url, const QJsonDocument &document,
              const QHash<QString, QString> &headers) override
    {
        constexpr int busy = 503;
        auto &second = counts.requests.at(secondSince(begin));
        ofThread().send(url, document, headers);
        const auto response = getResponse();
        if (response.getTransportCode() != notSent)
            ++second.at(response.getTransportCode() != 0 ? 2
                        : response.getHttpCode() == busy ? 1
                                                         : 0);
    }

private:
    static RestClient &ofThread()
    {
        thread_local RestClient client;
        return client;
    }

    Counts &counts;
    const Clock::time_point begin;
};

QJsonObject order(const QString &id, const QString &sum)
{
    const QJsonObject line{
        {u"basePricePerItem"_s, 1},
        {u"quantity"_s, 1},
        {u"lineNumber"_s, 1},
        {u"lineId"_s, 1},
        {u"product"_s, QJsonObject{{u"ids"_s, QJsonObject{{u"websiteLumaret"_s, u"4600"_s}}}}},
        {sum, 1}};
    return {{u"ids"_s, QJsonObject{{u"externalOrderIdLm"_s, id}}}, {u"lines"_s, QJsonArray{line}}};
}

void commit(lmmindbox::Interface &service, const QString &id)
{
    auto created = order(id, u"discountedPricePerLine"_s);
    created.insert(u"totalPrice"_s, 1);
    const QJsonObject customer{{u"mobilePhone"_s, u"79160000001"_s}};
    (void)service.createAuthorizedOrder({{u"order"_s, created}, {u"customer"_s, customer}}, false);
    auto paid = order(id, u"discountedPriceOfLine"_s);
    auto lines = paid.value(u"lines"_s).toArray();
    auto line = lines.at(0).toObject();
    line.insert(u"status"_s, u"Paid"_s);
    paid.insert(u"lines"_s, QJsonArray{line});
    (void)service.changeOrderStatus({{u"order"_s, paid}}, false);
}

/// A till's process: its cashier; never returns.
[[noreturn]] void sell(int till, const QString &file, int receiptsPerHour, Counts &counts,
                       Clock::time_point begin)
{
    constexpr seconds scanning{30};
    const CountingClient client(counts, begin);
    Singleton<DBQueueBroker>::instance()->setFile(file);
    till::UnstoredMessages unstored;
    till::BackgroundDelivery delivery(file, unstored, {});
    lmmindbox::Interface service;
    std::minstd_rand random(till + 1);
    std::exponential_distribution pause(receiptsPerHour / 3'600.0);
    const auto afterPause = [&] {
        return std::chrono::round<Clock::duration>(std::chrono::duration<double>(pause(random)));
    };
    std::deque<Clock::time_point> commits;
    auto nextReceipt = Clock::now() + afterPause();
    auto nextLook = Clock::now();
    for (int receipt = 0;;) {
        if (Clock::now() >= nextReceipt) {
            nextReceipt += afterPause();
            (void)service.getCustomer(u"79160000001"_s);
            commits.push_back(Clock::now() + scanning);
        }
        if (!commits.empty() && Clock::now() >= commits.front()) {
            commits.pop_front();
            commit(service, u"%1-%2"_s.arg(till).arg(++receipt));
            delivery.wake();
        }
        if (Clock::now() >= nextLook) {
            nextLook += seconds(1);
            const auto state = Singleton<DBQueueBroker>::instance()->state(till::loyaltyQueue());
            counts.waiting.at(till) = state ? static_cast<int>(state->waiting) : -1;
        }
        auto next = std::min(nextReceipt, nextLook);
        std::this_thread::sleep_until(commits.empty() ? next : std::min(next, commits.front()));
    }
}

pid_t startSimulator(const QString &port, const QString &capacity, const QString &state)
{
    const auto child = ::fork();
    if (child == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGTERM);
        // It says where it listens, which is no line of ours.
        if (!std::freopen("/dev/null", "w", stdout))
            ::_exit(127);
        ::execl(SIMULATOR_FILE, "simulator", "--port", qPrintable(port), "--capacity",
                qPrintable(capacity), "--state", qPrintable(state), nullptr);
        ::_exit(127);
    }
    return child;
}

void end(pid_t process)
{
    ::kill(process, SIGTERM);
    ::waitpid(process, nullptr, 0);
}

/// Prints each second's counts, as the simulated chain's curve with the messages waiting, until
/// all tills have once sent everything after the outage.
void watch(const Counts &counts, int tills, Clock::time_point begin, seconds outage,
           const std::function<void(bool)> &serve)
{
    const auto goes = static_cast<int>(chain::before.count());
    const auto returns = goes + static_cast<int>(outage.count());
    std::vector<bool> hasCaughtUp(tills);
    auto left = tills;
    std::puts("second,served,turnedAway,inVain,waiting,left");
    for (int second = 0; left > 0 && second < mostSeconds - 10; ++second) {
        if (second == goes || second == returns)
            serve(second == returns);
        std::this_thread::sleep_until(begin + seconds(second + 1));
        int waiting = 0;
        for (int i = 0; i < tills; ++i) {
            waiting += counts.waiting.at(i);
            if (second > returns && counts.waiting.at(i) == 0 && !hasCaughtUp[i]) {
                hasCaughtUp[i] = true;
                --left;
            }
        }
        // Requests of the last seconds may still be unanswered.
        constexpr int longestAnswer = 6;
        if (second < longestAnswer)
            continue;
        const auto &[served, turnedAway, inVain] = counts.requests.at(second - longestAnswer);
        std::printf("%d,%d,%d,%d,%d,%d\n", second - longestAnswer - returns, served.load(),
                    turnedAway.load(), inVain.load(), waiting, left);
        std::fflush(stdout);
    }
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_LOGGING_RULES", "*=false");
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Real tills and a simulator with a limited capacity that goes away for a while. Prints "
        "the requests of each second as CSV."_s);
    parser.addHelpOption();
    parser.addOptions(
        {{u"tills"_s, u"Default: 200."_s, u"number"_s, u"200"_s},
         {u"receipts-per-hour"_s, u"Default: 360."_s, u"number"_s, u"360"_s},
         {u"outage"_s, u"Default: 60."_s, u"seconds"_s, u"60"_s},
         {u"capacity"_s, u"Default: 120."_s, u"number"_s, u"120"_s},
         {u"port"_s, u"Of the simulator. Default: 18114."_s, u"number"_s, u"18114"_s}});
    parser.process(application);
    const auto tills = std::clamp(parser.value(u"tills"_s).toInt(), 1, mostTills);
    const QTemporaryDir directory(QDir::current().filePath(u"tills-XXXXXX"_s));
    auto *const memory =
        ::mmap(nullptr, sizeof(Counts), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED || !directory.isValid())
        return 1;
    auto &counts = *new (memory) Counts{};
    auto *const config = Singleton<Config>::instance();
    config->set(u"LmMindbox:url"_s,
                u"http://127.0.0.1:%1/v3/operations/sync"_s.arg(parser.value(u"port"_s)));
    config->set(u"LmMindbox:endpoint"_s, u"till-demo"_s);
    config->set(u"LmMindbox:secretKey"_s, u"demo-secret"_s);

    const auto start = [&] {
        return startSimulator(parser.value(u"port"_s), parser.value(u"capacity"_s),
                              directory.filePath(u"state"_s));
    };
    auto simulator = start();
    std::this_thread::sleep_for(seconds(2));
    const auto begin = Clock::now();
    std::vector<pid_t> processes;
    for (int till = 0; till < tills; ++till) {
        const auto own = directory.filePath(QString::number(till));
        QDir().mkpath(own);
        const auto child = ::fork();
        if (child == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            sell(till, own + u"/till.db"_s, parser.value(u"receipts-per-hour"_s).toInt(), counts,
                 begin);
        }
        processes.push_back(child);
    }
    watch(counts, tills, begin, seconds(parser.value(u"outage"_s).toInt()), [&](bool isThere) {
        if (isThere)
            simulator = start();
        else
            end(simulator);
    });
    for (const auto process : processes)
        end(process);
    end(simulator);
    return 0;
}
