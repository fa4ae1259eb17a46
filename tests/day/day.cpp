#include "day.h"

#include "till/core/retention.h"

#include <host/config.h>

#include <QFile>

namespace day {

Day::Day(bool isTold)
    : cashier(isTold)
{
    disk.format();
    disk.clock = [this] { return trueTime + clockOffset; };
    Clock::setSource(this);
    model.store = till::Store::fileIn(directory.path());
    Singleton<Config>::instance()->clear();
    Singleton<Config>::instance()->set(u"LmMindbox:url"_s,
                                       u"http://service.test/v3/operations/sync"_s);
    service.timeOut = [this] { trueTime += 5000; };
    service.whenAnswered = [this](const auto &response) {
        if (life)
            life->till.sale().noteAnswer(response);
    };
    service.complain = [this](const QString &id, const QString &complaint) {
        if (!model.receipts.value(Service::numberOf(id)).isForgiven)
            model.complain(complaint);
    };
}

QString Day::run(const std::vector<Step> &steps)
{
    size_t number = 0;
    while (number < steps.size() && model.complaint.isEmpty())
        act(steps[number++]);
    const auto isOver = model.complaint.isEmpty();
    if (isOver)
        finish();
    return model.complaint.isEmpty()
               ? QString()
               : u"%1: %2"_s.arg(isOver ? u"the end"_s : u"step %1"_s.arg(number), model.complaint);
}

void Day::act(const Step &step)
{
    random.state = service.random.state = step.seed;
    cashier.tell(u"* "_s + QLatin1String(actions[step.action].name));
    trueTime += 1000;
    disk.syncs = disk.turns = disk.faults = model.syncs = 0;
    const auto hasRun = life != nullptr;
    actions[step.action].act(*this);
    if (disk.isDead())
        return bury();
    if (life)
        model.compare(life->till.sale().receipt(), service);
    // A step costs one sync, a commit two; SQLite's own turns of its log come on top.
    if (hasRun && model.syncs > 0 && disk.faults + disk.turns == 0 && disk.syncs > model.syncs)
        model.complain(u"%1 syncs, expected %2"_s.arg(disk.syncs).arg(model.syncs));
}

void Day::start()
{
    life = std::make_unique<Life>(directory.path(), cashier);
    const auto started = life->till.start(life->plugin);
    cashier.tell(u"the till starts. "_s + started.value_or(u"not"_s));
    QObject::connect(&life->till.sale(), &till::Sale::happened, [this](const auto &event) {
        if (disk.isDead())
            return;
        cashier.tell(u"  told %1: number %2, sum %3, report %4 %5"_s.arg(int(event.kind))
                         .arg(event.number)
                         .arg(event.sum)
                         .arg(int(event.report))
                         .arg(event.text));
        model.hear(event, life->till.sale().receipt(), trueTime);
    });
    life->till.sale().recover();
    if (disk.isDead())
        return;
    if (disk.faults == 0)
        return model.restart(life->till.sale().receipt(), trueTime - 29 * aDay);
    // Somebody mends the disk and starts the till again.
    if (QFile::exists(model.store + u"-damaged"_s))
        model.putAside();
    disk.fail(FaultyDisk::Fault::None);
    disk.faults = 0;
    life.reset();
    start();
}

void Day::park()
{
    sale();
    const auto first = life->till.store().messages(false, 1);
    if (!first || first->isEmpty())
        return;
    service.refused.insert(Service::idOf(first->first().message["payload"_L1].toObject()));
    (void)life->till.store().setParked({first->first().id}, true);
}

void Day::unparkAll()
{
    sale();
    QList<qint64> ids;
    const auto parked = life->till.store().messages(true, 1000);
    for (const auto &message : parked.value_or(QList<till::QueuedMessage>()))
        ids.append(message.id);
    (void)life->till.store().setParked(ids, false);
}

void Day::removeOld()
{
    sale();
    const auto pages = [this] {
        return model.rows(u"PRAGMA page_count"_s).value(0).value(0).toInt();
    };
    const auto before = pages();
    till::Retention(life->till.store()).step();
    if (const auto left = pages(); left > 0 && before - left > 210)
        model.complain(u"retention gives back %1 pages in one step"_s.arg(before - left));
}

void Day::passWeeks()
{
    passTime(random.below(60) * aDay);
    if (random.below(3) > 0)
        return;
    // A long queue has come and gone meanwhile.
    const Look look(model.store);
    look.rows(u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 50) "
              "INSERT INTO messages (queue, message, tag, queuedAt) "
              "SELECT 'other', zeroblob(40000), '', 0 FROM n"_s);
    look.rows(u"DELETE FROM messages WHERE queue = 'other'"_s);
}

void Day::damage()
{
    if (!disk.isSound() || !quit())
        return;
    std::optional<Look> look(model.store);
    look->rows(u"UPDATE receipts SET state = 'committing' WHERE id IN (SELECT id FROM receipts "
               "WHERE state = 'committed' AND kind = 1 AND report IN ('reported', 'queued') "
               "ORDER BY id DESC LIMIT 6)"_s);
    for (const auto *table : {"messages", "history"})
        look->rows(u"DELETE FROM %1 WHERE receipt IN (SELECT id FROM receipts WHERE state = "
                   "'committing')"_s.arg(QLatin1String(table)));
    const auto left = look->rows(u"SELECT id, number, state FROM receipts WHERE "
                                 "report = 'queued' OR state IN ('open', 'committing')"_s);
    if (random.below(4) == 0) {
        look->rows(u"UPDATE receipts SET head = 'garbage' WHERE state <> 'committed'"_s);
        model.unreadable = int(
            std::ranges::count_if(left, [](const auto &row) { return row.at(2) != u"committed"; }));
        return model.damage({});
    }
    const auto waiting = look->rows(u"SELECT count(*) FROM messages WHERE parked = 0"_s).value(0);
    const auto pages = look->rows(u"PRAGMA page_count"_s).value(0).value(0).toInt();
    look.reset();
    disk.spoil(model.store.toStdString(), 2 + random.below(pages - 1), random);
    const auto state = till::Store(directory.path()).deliveryState();
    if (state.error.isEmpty() && QString::number(state.waiting) != waiting.value(0))
        model.complain(u"%1 messages wait in the damaged store, not %2"_s.arg(waiting.value(0))
                           .arg(state.waiting));
    QFile(model.store + u"-damaged"_s).open(QIODevice::WriteOnly);
    QMap<int, QString> readable;
    look.emplace(model.store);
    for (const auto &row : left) {
        const auto read = look->rows(
            u"SELECT r.*, p.* FROM receipts r LEFT JOIN positions p ON p.receipt = r.id WHERE r.id = "_s +
            row.at(0));
        if (read.isEmpty() || read.last().last() != u"unreadable")
            readable.insert(row.at(1).toInt(), row.at(2));
    }
    model.damage(readable);
}

void Day::finish()
{
    cashier.tell(u"* all faults end"_s);
    disk.killAfter(-1);
    disk.fail(FaultyDisk::Fault::None);
    service.mood = Service::Well;
    const auto isLeft = [this] {
        return !model
                    .rows(u"SELECT 1 FROM receipts WHERE state IN ('open', 'committing') "
                          "OR report IN ('queued', 'refused') LIMIT 1"_s)
                    .isEmpty();
    };
    // A start reports three interrupted receipts.
    const auto most = model.receipts.size() / 3 + 3;
    for (int starts = 0; starts == 0 || (starts < most && isLeft()); ++starts) {
        deliver(1000);
        unparkAll();
        for (const auto &row :
             model.rows(u"SELECT number FROM receipts WHERE report = 'refused'"_s))
            sale().report(row.first().toInt());
        if (model.current != 0 && model.receipts[model.current].view.positions.isEmpty())
            sale().cancel();
        else if (model.current != 0)
            sale().commit();
        deliver(1000);
        if (!quit())
            model.complain(u"what could not be saved is still in memory"_s);
    }
    model.settle(service);
}

QString findingOf(const std::vector<Step> &steps, bool isTold)
{
    return Day(isTold).run(steps);
}

} // namespace day
