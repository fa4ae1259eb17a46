#pragma once

#include "cashier.h"
#include "model.h"
#include "plan.h"
#include "plugin/plugin.h"
#include "till/core/deliverer.h"
#include "till/core/sale.h"
#include "till/core/till.h"

#include <host/clock.h>

#include <QTemporaryDir>

#include <memory>

namespace day {

/// A day at the till: its process again and again, the disk, the service and the clock.
class Day : private Clock::Source
{
public:
    /// A till from its start to its end, with all that a process holds in memory.
    struct Life
    {
        Life(const QString &directory, DialogPresenter &face)
            : till({{}, directory, {}, {}, {}, {}}, face)
            , deliverer(till.store(), directory, {})
        {
            plugin.init();
            plugin.registerLoyaltySystem();
        }

        lmmindbox::Plugin plugin;
        till::Till till;
        till::Deliverer deliverer;
    };

    explicit Day(bool isTold);
    ~Day() override
    {
        bury();
        Clock::setSource(nullptr);
    }
    Q_DISABLE_COPY_MOVE(Day)

    QString run(const std::vector<Step> &steps);
    void act(const Step &step);

    till::Sale &sale()
    {
        if (!life)
            start();
        return life->till.sale();
    }

    void start();

    /// \return Whether the till has ended; it refuses to while a receipt is only in memory.
    bool quit()
    {
        sale();
        if (!life->till.onlyInMemory().isEmpty() || disk.isDead())
            return false;
        life.reset();
        return true;
    }

    /// The process has died: nothing of it is left but what it wrote.
    void bury()
    {
        if (life) {
            cashier.tell(isPowerCut ? u"the power is cut"_s : u"the till is killed"_s);
            model.die(life->till.sale().receipt());
            life.reset();
        }
        disk.revive(isPowerCut ? &random : nullptr);
    }

    void die(bool byPowerCut)
    {
        isPowerCut = byPowerCut;
        disk.killAfter(1 + random.below(80));
    }

    void deliver(int most)
    {
        sale();
        for (; most > 0 && life->deliverer.step().outcome == till::Deliverer::Outcome::Settled;
             --most)
            ;
        model.syncs = 0; // how often it saves depends on how fast the service answers
    }

    void deliverElsewhere()
    {
        till::Store store(directory.path());
        (void)till::Deliverer(store, directory.path(), {}).step();
        if (!disk.isDead())
            sale(); // a till that starts meanwhile may replace the file that is open here
    }

    void park();
    void unparkAll();
    void removeOld();

    void passTime(int64_t time)
    {
        trueTime += time;
        clockOffset = 0; // somebody has set it right
    }

    void passWeeks();

    void rush()
    {
        for (int receipt = 0; receipt < 7 && !disk.isDead(); ++receipt) {
            for (int position = 0; position < 3; ++position)
                sale().add(u"1"_s, u"Bread"_s, 1, 1);
            sale().commit();
        }
    }

    /// As if the process had died in several commits, and the disk had spoiled something
    /// afterwards.
    void damage();

    /// All faults end: what is left must be done now.
    void finish();

    int anyPosition()
    {
        const auto shown = sale().receipt();
        return shown && !shown->positions.isEmpty()
                   ? shown->positions.at(random.below(int(shown->positions.size()))).number
                   : 1;
    }

    void reportAny()
    {
        const auto numbers = model.receipts.keys();
        const auto number = numbers.isEmpty() ? 1 : numbers.at(random.below(int(numbers.size())));
        for (const auto &id : std::as_const(service.paid))
            model.receipts[number].wasPaid |= Service::numberOf(id) == number;
        sale().report(number);
    }

    QDateTime now() override
    {
        return QDateTime::fromMSecsSinceEpoch(trueTime + clockOffset, Qt::UTC);
    }
    Clock::Time steady() override { return Clock::Time(std::chrono::milliseconds(trueTime)); }

    Cashier cashier;
    Random &random = cashier.random;
    QTemporaryDir directory{u"/dev/shm/day-XXXXXX"_s};
    Service service;
    Model model;
    std::unique_ptr<Life> life;
    bool isPowerCut = false; ///< How the process dies.
    int64_t trueTime = 1'790'000'000'000;
    int64_t clockOffset = 0; ///< Of the till's clock from the true one.
};

} // namespace day
