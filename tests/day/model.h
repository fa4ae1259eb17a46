#pragma once

#include "look.h"
#include "service.h"
#include "till/core/saleevent.h"

#include <host/clock.h>

#include <optional>

namespace day {

constexpr int64_t aDay = 24 * 3'600'000;

using Shown = std::optional<till::ReceiptView>; ///< The receipt at hand, if there is one.

/// The day as the cashier was told of it, and what must be true then.
struct Model
{
    struct Receipt
    {
        till::ReceiptView view;
        QString state = u"open"_s; ///< As told.
        bool isForgiven = false;   ///< Told as not saved when the process died.
        bool isAside = false;      ///< In a damaged store that was put aside.
        bool isRefused = false;    ///< By its last report.
        bool wasPaid = false;      ///< When it was reported again.
        int64_t begun = 0;         ///< By the true clock, or as `begunAt` says.
        int64_t dated = 0;         ///< By the till's clock.
    };

    QString store; ///< Its file.
    QMap<int, Receipt> receipts;
    QSet<int> unsaved, toldRefused;
    std::vector<Shown> possible{std::nullopt}; ///< At hand after a death.
    int current = 0;
    int unreadable = 0; ///< Receipts still to be told as unreadable.
    int syncs = 0;      ///< That the step may have cost.
    QString complaint;

    void complain(const QString &text) { complaint = complaint.isEmpty() ? text : complaint; }

    QList<QStringList> rows(const QString &sql) const { return Look(store).rows(sql); }

    static bool isSame(const Shown &one, const Shown &other)
    {
        return one.has_value() == other.has_value() &&
               (!one || (one->header == other->header && one->positions == other->positions &&
                         one->total == other->total && one->cardNumber == other->cardNumber));
    }
    static QString text(const Shown &shown)
    {
        return shown ? u"receipt %1 with %2 positions, total %3, card '%4'"_s.arg(shown->header.num)
                           .arg(shown->positions.size())
                           .arg(QString::number(shown->total), shown->cardNumber)
                     : u"no receipt"_s;
    }

    /// While the process lives.
    void hear(const till::SaleEvent &event, const Shown &shown, int64_t trueTime)
    {
        using Kind = till::SaleEvent::Kind;
        static const QMap<Kind, int> costs{{Kind::Committed, 2},     {Kind::Identified, 3},
                                           {Kind::NotIdentified, 3}, {Kind::ActionEnded, 2},
                                           {Kind::ReportedAgain, 2}, {Kind::Refused, 0}};
        syncs += costs.value(event.kind, 1);
        const auto number = event.number;
        auto &positions = receipts[current].view.positions;
        switch (event.kind) {
        case Kind::Opened:
            if (receipts.contains(number) && !receipts[number].isForgiven)
                complain(u"number %1 is given twice"_s.arg(number));
            receipts[number] = {.view = *shown,
                                .isForgiven = receipts.value(number).isForgiven,
                                .begun = begunAt(trueTime),
                                .dated = Clock::now().toMSecsSinceEpoch()};
            current = number;
            break;
        case Kind::PositionAdded:
        case Kind::PositionChanged:
        case Kind::PositionRemoved:
        case Kind::Discounted: {
            const auto at =
                std::ranges::find(positions, event.position.number, &till::PositionView::number);
            if (at == positions.end())
                positions.append(event.position);
            else if (event.kind == Kind::PositionRemoved)
                positions.erase(at);
            else
                *at = event.position;
            break;
        }
        case Kind::Committed:
            if (event.sum != receipts[number].view.total)
                complain(u"receipt %1 is committed with another total"_s.arg(number));
            [[fallthrough]];
        case Kind::Cancelled:
        case Kind::ReportedAgain:
            receipts[number].state =
                event.kind == Kind::Cancelled ? u"cancelled"_s : u"committed"_s;
            current = number == current ? 0 : current;
            toldRefused.remove(number);
            receipts[number].isRefused = event.report == till::Report::Refused;
            if (receipts[number].isRefused)
                toldRefused.insert(number);
            break;
        case Kind::NotStored:
            unsaved.insert(number);
            break;
        case Kind::StoredLate:
            if (!unsaved.remove(number))
                complain(u"receipt %1 is saved late and was not told before"_s.arg(number));
            receipts[number].wasPaid = true; // perhaps, by messages of its report before this one
            break;
        case Kind::ReceiptUnreadable:
            --unreadable;
            break;
        default:
            break;
        }
        remember(shown);
    }
    /// Receipts of a late clock count as old, unless one of the right date stands before them.
    int64_t begunAt(int64_t trueTime) const
    {
        const auto isRight = [trueTime](const Receipt &receipt) {
            return !receipt.isForgiven && !receipt.isAside &&
                   std::abs(trueTime - receipt.dated) < aDay;
        };
        return std::ranges::any_of(receipts, isRight)
                   ? trueTime
                   : std::min<int64_t>(trueTime, Clock::now().toMSecsSinceEpoch());
    }
    /// A death now leaves at hand what is shown, or what was before when it is not saved.
    void remember(const Shown &shown)
    {
        if (shown && current == shown->header.num)
            receipts[current].view.total = shown->total;
        if (unsaved.isEmpty() || (current != 0 && !unsaved.contains(current)))
            possible.clear();
        possible.push_back(shown);
    }

    /// After each step.
    void compare(const Shown &shown, const Service &service)
    {
        if (shown ? shown->header.num != current ||
                        shown->positions != receipts[current].view.positions
                  : current != 0)
            complain(u"told was %1, there is %2"_s.arg(text(receipts[current].view), text(shown)));
        if (shown)
            receipts[current].view = *shown;
        remember(shown);
        for (const auto number : std::exchange(toldRefused, {})) {
            const auto kept = rows(
                u"SELECT answer FROM receipts WHERE number = %1 ORDER BY id DESC"_s.arg(number));
            if (unsaved.isEmpty() &&
                !kept.value(0).value(0).contains(service.refusals.value(number)))
                complain(u"receipt %1 was refused with another answer than is kept"_s.arg(number));
        }
    }

    /// The process has died in a step; what would be shown after it was perhaps stored.
    void die(const Shown &shown)
    {
        // A commit that could not be noted may have reached the service all the same.
        if (disk.faults > 0 && current != 0)
            unsaved.insert(current);
        for (const auto number : std::as_const(unsaved))
            receipts[number].isForgiven = true;
        possible.push_back(shown);
        unsaved.clear();
        toldRefused.clear();
    }

    /// While no process ran, the disk has spoiled something. `readable`: the numbers of what is
    /// left to be done and can be read.
    void damage(const QMap<int, QString> &readable)
    {
        for (const auto &[number, receipt] : receipts.asKeyValueRange()) {
            receipt.isForgiven = receipt.isForgiven || !readable.contains(number);
            receipt.isAside = readable.value(number) == u"committed"; // only its messages go on
            receipt.wasPaid = true;
        }
        if (!readable.contains(current))
            possible = {std::nullopt};
        toldRefused.clear();
    }

    /// What a start has finished in a damaged store stays there when the next start replaces it, so
    /// nobody reports a refused receipt again.
    void putAside()
    {
        for (auto &receipt : receipts) {
            receipt.isAside |= receipt.state == u"committed";
            receipt.isForgiven |= receipt.isRefused;
        }
        toldRefused.clear();
    }

    /// The next process has been started. Receipts begun before `oldest` may have been removed.
    void restart(const Shown &shown, int64_t oldest)
    {
        const auto number = shown ? shown->header.num : 0;
        const auto isPossible = [&](const Shown &one) {
            return std::ranges::any_of(possible,
                                       [&](const auto &other) { return isSame(one, other); });
        };
        const auto isReturned = receipts.value(number).isForgiven && isPossible(std::nullopt);
        if (!isPossible(shown) && !isReturned)
            complain(
                u"the start opens %1, expected was %2"_s.arg(text(shown), text(possible.front())));
        if (std::exchange(unreadable, 0) > 0)
            complain(u"not all unreadable receipts are told"_s);
        QMap<int, QString> found;
        for (
            const auto &row : rows(
                u"SELECT number, replace(state, 'committing', 'committed') FROM receipts ORDER BY id"_s))
            found.insert(row.at(0).toInt(), row.at(1));
        for (const auto &[key, receipt] : receipts.asKeyValueRange()) {
            if (receipt.isForgiven || receipt.isAside || key == number)
                continue;
            const auto now = found.value(key, u"cancelled"_s); // one that the store never heard of
            if (key == current && receipt.state == u"open")
                receipt.state = now; // the process died in it
            if (receipt.begun < oldest)
                continue;
            if (now != receipt.state || now == u"open")
                complain(u"receipt %1 was told as %2 and is %3"_s.arg(QString::number(key),
                                                                      receipt.state, now));
        }
        if (shown) {
            receipts[number].view = *shown;
            receipts[number].state = u"open"_s;
        }
        current = number;
        possible = {shown};
    }

    /// In the end, with nothing left to be done.
    void settle(const Service &service)
    {
        const Look look(store);
        for (const auto &row : look.rows(
                 u"SELECT message->>'$.payload.order.ids.externalOrderIdLm' FROM messages"_s)) {
            if (!receipts.value(Service::numberOf(row.first())).isForgiven)
                complain(u"a message of order %1 waits for ever"_s.arg(row.first()));
        }
        for (
            const auto &row : look.rows(
                u"SELECT integrity_check FROM pragma_integrity_check WHERE integrity_check <> 'ok'"_s))
            complain(u"the store is damaged: "_s + row.first());
        QMap<int, QString> orders;
        for (const auto &id : service.orders.keys()) {
            const auto number = Service::numberOf(id);
            if (receipts.value(number).isForgiven)
                continue;
            if (orders.contains(number) || receipts.value(number).state != u"committed")
                complain(u"order %1 is a second one or has no receipt"_s.arg(id));
            orders.insert(number, id);
        }
        for (const auto &[number, receipt] : receipts.asKeyValueRange()) {
            if (number == 0 || receipt.isForgiven || receipt.state == u"cancelled")
                continue;
            if (receipt.view.header.kind == DocumentHeader::sale &&
                !isOf(receipt.view, service.orders.value(orders.value(number)),
                      service.paid.contains(orders.value(number))))
                complain(
                    u"of %1 there is no such order, or it is not paid"_s.arg(text(receipt.view)));
            checkHistory(look, number, receipt.wasPaid);
        }
    }

    static bool isOf(const till::ReceiptView &view, const QJsonObject &order, bool isPaid)
    {
        const auto lines = order["lines"_L1].toArray();
        auto isSame = isPaid && order["totalPrice"_L1] == view.total &&
                      order["phone"_L1] == view.cardNumber && lines.size() == view.positions.size();
        for (qsizetype i = 0; isSame && i < lines.size(); ++i) {
            const auto &position = view.positions.at(i);
            isSame = lines[i]["product"_L1]["ids"_L1]["websiteLumaret"_L1] == position.code &&
                     lines[i]["quantity"_L1] == position.quantity &&
                     lines[i]["discountedPricePerLine"_L1] == position.sum;
        }
        return isSame;
    }

    void checkHistory(const Look &look, int number, bool wasPaid)
    {
        const QStringList order{QString(), u"open"_s, u"committing"_s, u"committed"_s};
        QStringList last{QString(), QString()};
        for (const auto &row :
             look.rows(u"SELECT h.state, h.report FROM history h JOIN receipts r ON "
                       "r.id = h.receipt WHERE number = %1 ORDER BY h.id"_s.arg(number))) {
            if (order.indexOf(row.at(0)) < order.indexOf(last.at(0)) ||
                (last.at(1) == u"reported" && row.at(1) != u"reported" && !wasPaid))
                complain(u"the history of receipt %1 goes back"_s.arg(number));
            last = row;
        }
    }
};

} // namespace day
