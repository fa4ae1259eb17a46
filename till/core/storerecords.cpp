#include "till/core/store.h"

#include <array>

namespace till {

namespace {

QDateTime utc(const QVariant &milliseconds)
{
    return QDateTime::fromMSecsSinceEpoch(milliseconds.toLongLong()).toUTC();
}

/// Open for a name that no version knows.
ReceiptState stateOf(const QVariant &name)
{
    for (const auto state :
         {ReceiptState::Committing, ReceiptState::Committed, ReceiptState::Cancelled}) {
        if (name == nameOf(state))
            return state;
    }
    return ReceiptState::Open;
}

ReportRecord reportOf(const Database::Row &row, int column)
{
    ReportRecord record;
    for (const auto outcome : {Report::Reported, Report::Queued, Report::Refused}) {
        if (row.at(column) == nameOf(outcome))
            record.outcome = outcome;
    }
    record.answer = row.at(column + 1).toString();
    record.told = row.at(column + 2).toString();
    return record;
}

#define RECORD_COLUMNS                                                                             \
    "id, shop, cash, shift, number, kind, begun, state, report, answer, told, changed"

ReceiptRecord recordOf(const Database::Row &row)
{
    ReceiptRecord record;
    record.row = row.at(0).toLongLong();
    record.header.shopCode = row.at(1).toInt();
    record.header.cashCode = row.at(2).toInt();
    record.header.shift = row.at(3).toInt();
    record.header.num = row.at(4).toInt();
    record.header.kind = row.at(5).toInt();
    record.header.dateTimeBeg = QDateTime::fromString(row.at(6).toString(), Qt::ISODate);
    record.state = stateOf(row.at(7));
    record.report = reportOf(row, 8);
    record.changed = utc(row.at(11));
    if (row.size() > 12)
        record.document = row.at(12).toString();
    return record;
}

/// As of the receipts under way, an index is taken only where the query says what it covers.
#define UNREPORTED "report IN ('queued', 'refused') AND "

bool isUnreported(Report outcome)
{
    return outcome == Report::Queued || outcome == Report::Refused;
}

} // namespace

QString nameOf(ReceiptState state)
{
    static constexpr std::array names{"open", "committing", "committed", "cancelled"};
    return QLatin1String(names.at(static_cast<size_t>(state)));
}

QString nameOf(Report report)
{
    static constexpr std::array names{"", "reported", "queued", "refused"};
    return QLatin1String(names.at(static_cast<size_t>(report)));
}

std::optional<QList<ReceiptRecord>> Store::list(const ReceiptFilter &filter)
{
    QVariantList values{filter.since.isValid() ? filter.since.toString(Qt::ISODate)
                                               : QStringLiteral(""),
                        filter.limit};
    if (!filter.outcome)
        return records(database.read("SELECT " RECORD_COLUMNS " FROM receipts WHERE begun >= ? "
                                     "ORDER BY id DESC LIMIT ?",
                                     values));
    values.prepend(nameOf(*filter.outcome));
    return records(database.read(isUnreported(*filter.outcome)
                                     ? "SELECT " RECORD_COLUMNS " FROM receipts WHERE " UNREPORTED
                                       "report = ? AND begun >= ? ORDER BY id DESC LIMIT ?"
                                     : "SELECT " RECORD_COLUMNS " FROM receipts WHERE "
                                       "report = ? AND begun >= ? ORDER BY id DESC LIMIT ?",
                                 values));
}

std::optional<QList<ReceiptRecord>> Store::find(int number)
{
    return records(database.read("SELECT " RECORD_COLUMNS ", document FROM receipts "
                                 "WHERE number = ? ORDER BY id DESC",
                                 {number}));
}

std::optional<QList<HistoryEntry>> Store::history(qint64 row)
{
    const auto rows = database.read(
        "SELECT at, state, report, answer, told FROM history WHERE receipt = ? ORDER BY id", {row});
    if (!rows)
        return std::nullopt;
    QList<HistoryEntry> entries;
    for (const auto &entry : *rows)
        entries.append({utc(entry.at(0)), stateOf(entry.at(1)), reportOf(entry, 2)});
    return entries;
}

std::optional<qint64> Store::countReported(Report outcome)
{
    const auto rows =
        database.read(isUnreported(outcome) ? "SELECT count(*) FROM receipts WHERE " UNREPORTED
                                              "report = ? AND state = 'committed'"
                                            : "SELECT count(*) FROM receipts WHERE report = ? AND "
                                              "state = 'committed'",
                      {nameOf(outcome)});
    return rows ? std::optional(rows->first().first().toLongLong()) : std::nullopt;
}

DeliveryState Store::deliveryState(const QString &queue)
{
    DeliveryState state;
    const auto waiting = database.read("SELECT count(*), min(queuedAt) FROM messages "
                                       "WHERE queue = ? AND parked = 0",
                                       {queue});
    const auto parked = database.read("SELECT count(*) FROM messages WHERE queue = ? "
                                      "AND parked = 1",
                                      {queue});
    const auto refused = countReported(Report::Refused);
    state.error = lastError();
    if (!waiting || !parked || !refused)
        return state;
    state.waiting = waiting->first().at(0).toLongLong();
    if (state.waiting > 0)
        state.oldestWaiting = utc(waiting->first().at(1));
    state.parked = parked->first().first().toLongLong();
    state.refused = *refused;
    return state;
}

std::optional<QList<ReceiptRecord>> Store::records(const std::optional<QList<Database::Row>> &rows)
{
    if (!rows)
        return std::nullopt;
    QList<ReceiptRecord> records;
    for (const auto &row : *rows)
        records.append(recordOf(row));
    return records;
}

} // namespace till
