#include "till/core/store.h"

#include "till/core/storeschema.h"

#include <host/documentjson.h>
#include <host/secretkey.h>

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace till {

namespace {

constexpr std::array states{"open"_L1, "committing"_L1, "committed"_L1, "cancelled"_L1};
constexpr std::array outcomes{""_L1, "reported"_L1, "queued"_L1, "refused"_L1};

/// The value with that name; the first value for an unknown name.
template<typename Value, size_t size>
Value valueOf(const std::array<QLatin1StringView, size> &names, const QVariant &name)
{
    const auto found = std::find(names.begin(), names.end(), name.toString());
    return found == names.end() ? Value() : static_cast<Value>(found - names.begin());
}

#define RECORD_COLUMNS "r.state, r.report, r.answer, r.told, r.changed, r.id, " HEADER_COLUMNS

HistoryEntry historyOf(const Database::Row &row)
{
    return {utcOf(row.at(4)),
            valueOf<ReceiptState>(states, row.at(0)),
            {valueOf<Report>(outcomes, row.at(1)), row.at(2).toString(), row.at(3).toString()}};
}

ReceiptRecord recordOf(const Database::Row &row)
{
    const auto latest = historyOf(row);
    return {row.at(5).toLongLong(), headerOf(row.sliced(6)), latest.state, latest.report,
            latest.at};
}

ExchangeCount countOf(const Database::Row &row)
{
    return {row.at(0).toString(), row.at(1).toString(), row.at(2).toLongLong(),
            row.at(3).toDouble(), row.at(4).toLongLong()};
}

qint64 idOf(const Database::Row &row)
{
    return row.first().toLongLong();
}

bool passes(const ReceiptRecord &record, const ReceiptFilter &filter)
{
    return (!filter.outcome || (record.report.outcome == *filter.outcome &&
                                record.state == ReceiptState::Committed)) &&
           (!filter.since.isValid() || record.header.dateTimeBeg.date() >= filter.since) &&
           (filter.number == 0 || record.header.num == filter.number);
}

} // namespace

QString nameOf(ReceiptState state)
{
    return states.at(static_cast<size_t>(state));
}

QString nameOf(Report report)
{
    return outcomes.at(static_cast<size_t>(report));
}

Report outcomeOf(const ReportRecord &report, const QList<QueuedMessage> &messages)
{
    const auto isParked = [](const QueuedMessage &message) { return message.isParked; };
    if (std::any_of(messages.begin(), messages.end(), isParked))
        return Report::Refused;
    return messages.isEmpty() || report.outcome == Report::Refused ? report.outcome
                                                                   : Report::Queued;
}

QString answerText(const QJsonObject &answer)
{
    constexpr qsizetype longest = 4096;
    if (answer.isEmpty())
        return {};
    const auto text =
        withoutSecretKey(QString::fromUtf8(QJsonDocument(answer).toJson(QJsonDocument::Compact)));
    return text.size() > longest ? text.left(longest) + QChar(0x2026) : text;
}

ReceiptRecord Store::Unsaved::current() const
{
    auto now = record;
    now.report.outcome = outcomeOf(record.report, messages);
    return now;
}

Store::Result<QList<qint64>> Store::rowsIn(ReceiptState state)
{
    const Call call(*this);
    // The index alone lists them, so one unreadable page hides no other receipt.
    return rows(idOf, "SELECT id FROM receipts WHERE state = ? ORDER BY id", {nameOf(state)});
}

StoredReceipt Store::read(qint64 row)
{
    const Call call(*this);
    return readRow(row);
}

StoredReceipt Store::readRow(qint64 row)
{
    StoredReceipt receipt;
    receipt.row = row;
    const auto heads = database.run("SELECT state, head FROM receipts WHERE id = ?", {row});
    const auto positions =
        database.run("SELECT position FROM positions WHERE receipt = ? ORDER BY number", {row});
    if (!heads || !positions || heads->isEmpty()) {
        const auto &failed = heads ? positions : heads;
        receipt.error = failed ? u"there is no such receipt"_s : failed.error().text;
        return receipt;
    }
    receipt.state = valueOf<ReceiptState>(states, heads->first().at(0));
    auto json = QJsonDocument::fromJson(heads->first().at(1).toByteArray()).object();
    QJsonArray all;
    for (const auto &position : *positions)
        all.append(QJsonDocument::fromJson(position.first().toByteArray()).object());
    json.insert("positions"_L1, all);
    if (const auto read = documentjson::fromJson(json))
        receipt.document = *read;
    else
        receipt.error = read.error();
    return receipt;
}

StoredReceipt Store::committedReceipt(int number)
{
    const Call call(*this);
    (void)flush(0);
    for (const auto &unsaved : std::as_const(receipts)) {
        if (unsaved.record.header.num == number && unsaved.record.state == ReceiptState::Committed)
            return {0, unsaved.record.state, unsaved.document, {}};
    }
    const auto found = rows(idOf,
                            "SELECT id FROM receipts WHERE number = ? AND +state = 'committed' "
                            "ORDER BY id DESC LIMIT 1",
                            {number});
    if (found && !found->isEmpty())
        return readRow(found->first());
    return {.error = found ? QString() : found.error()};
}

Store::Result<QList<ReceiptRecord>> Store::list(const ReceiptFilter &filter)
{
    const Call call(*this);
    auto found =
        rows(recordOf,
             "SELECT " RECORD_COLUMNS " FROM receipts r WHERE r.begun >= ?1 "
             "AND (?2 IS NULL OR (r.report = ?2 AND r.state = 'committed')) "
             "AND (?3 = 0 OR r.number = ?3) ORDER BY r.id DESC LIMIT ?4",
             {filter.since.isValid() ? filter.since.toString(Qt::ISODate) : QString(u'0'),
              filter.outcome ? nameOf(*filter.outcome) : QVariant(), filter.number, filter.limit});
    if (!found)
        return found;
    found->removeIf([this](const auto &record) { return findUnsaved(record.header) != nullptr; });
    for (const auto &unsaved : std::as_const(receipts)) {
        if (const auto record = unsaved.current(); passes(record, filter))
            found->prepend(record);
    }
    return found;
}

Store::Result<QList<HistoryEntry>> Store::history(qint64 row)
{
    const Call call(*this);
    return rows(historyOf,
                "SELECT state, report, answer, told, at FROM history WHERE receipt = ? "
                "ORDER BY id",
                {row});
}

Store::Result<qint64> Store::countReported(Report outcome)
{
    const Call call(*this);
    return rows(idOf, "SELECT count(*) FROM receipts WHERE state = 'committed' AND report = ?",
                {nameOf(outcome)})
        .map([](const QList<qint64> &counted) { return counted.first(); });
}

Store::Result<QList<ExchangeCount>> Store::exchanges()
{
    const Call call(*this);
    return rows(countOf, "SELECT operation, outcome, count, seconds, last FROM exchanges");
}

/// The latest day that ends a month with receipts on three days; invalid for none. A clock that was
/// wrong for a day or two does not set it.
Store::Result<QDate> Store::latestSureDay()
{
    constexpr int month = 30;
    QList<QDate> days; // latest first
    for (auto before = u"9999"_s;; before = days.last().toString(Qt::ISODate)) {
        const auto found =
            database.run("SELECT max(begun) FROM receipts WHERE begun < ?", {before});
        if (!found)
            return tl::unexpected(found.error());
        const auto day = QDateTime::fromString(found->first().first().toString(), Qt::ISODate);
        if (!day.isValid())
            return QDate();
        days.append(day.date());
        if (days.size() > 2 && days.at(days.size() - 3) <= day.date().addDays(month))
            return days.at(days.size() - 3);
    }
}

Store::Result<int> Store::removeOld(int days, int limit)
{
    const Call call(*this);
    const auto sure = latestSureDay();
    if (!sure || !sure->isValid())
        return sure.map([](QDate /*none*/) { return 0; });
    const auto today = std::min(*sure, Clock::now().toLocalTime().date());
    const auto day = today.addDays(-days);
    // Read first, so that a store with nothing to remove is not written.
    const auto found =
        rows(idOf,
             "SELECT id FROM receipts WHERE begun < ?1 AND changed < ?4 "
             "AND +state IN ('committed', 'cancelled') AND report NOT IN ('queued', 'refused') "
             "AND NOT EXISTS (SELECT 1 FROM messages WHERE receipt = receipts.id) "
             // One with an old date behind younger ones was begun while the clock was wrong.
             "AND id < (SELECT min(id) FROM receipts WHERE begun BETWEEN ?1 AND ?2) "
             "ORDER BY begun LIMIT ?3",
             {day.toString(Qt::ISODate), today.addDays(1).toString(Qt::ISODate), limit,
              day.startOfDay().toMSecsSinceEpoch()});
    if (!found || found->isEmpty())
        return found.map([](const auto & /*none*/) { return 0; });
    return database
        .transact([&](auto &disk) {
            for (const auto id : *found)
                disk.run("DELETE FROM receipts WHERE id = ?", {id});
            // At most 200 pages, so that no sale waits for it.
            disk.run("PRAGMA incremental_vacuum(200)");
        })
        .map([&] { return static_cast<int>(found->size()); });
}

} // namespace till
