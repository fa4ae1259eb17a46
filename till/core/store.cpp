#include "till/core/store.h"

#include "till/core/reservednumbers.h"

#include <host/documentjson.h>

#include <log4qt/logger.h>
#include <log4qt/logmanager.h>

#include <QJsonDocument>

#include <algorithm>

namespace till {

namespace {

/// Without it SQLite would read every receipt ever kept: it takes an index of some rows only for a
/// query that says the same of them.
#define UNDER_WAY "state IN ('open', 'committing') AND "

bool isUnderWay(ReceiptState state)
{
    return state == ReceiptState::Open || state == ReceiptState::Committing;
}

qint64 now()
{
    return QDateTime::currentMSecsSinceEpoch();
}

/// A null text would be no text to SQLite.
QString kept(const QString &text)
{
    return text.isNull() ? QStringLiteral("") : text;
}

/// Its text; casts keep SQLite and Qt from turning it into another encoding and back.
QByteArray jsonOf(const AbstractDocument &document)
{
    QString error;
    const auto json = documentjson::toJson(document, error);
    if (!error.isEmpty()) {
        static const auto *const logger = Log4Qt::LogManager::logger(QStringLiteral("till.store"));
        logger->error(QStringLiteral("receipt %1 is stored without what cannot be: %2"),
                      document.getHeader().num, error);
    }
    return QJsonDocument(json).toJson(QJsonDocument::Compact);
}

} // namespace

Store::Store(const QString &directory)
    : database(fileIn(directory))
    , reserved(std::make_unique<ReservedNumbers>(directory + QLatin1String("/numbers")))
{}

Store::~Store() = default;

QString Store::fileIn(const QString &directory)
{
    return directory + QLatin1String("/till.db");
}

bool Store::isForeign() const
{
    return database.problem() == Database::Problem::Foreign ||
           database.problem() == Database::Problem::Newer;
}

StoredReceipt Store::open(const TillPlace &place, int kind)
{
    DocumentHeader header;
    header.kind = kind;
    header.shopCode = place.shopCode;
    header.cashCode = place.cashCode;
    header.dateTimeBeg = QDateTime::fromSecsSinceEpoch(QDateTime::currentSecsSinceEpoch());

    Transaction transaction(database);
    const auto known = transaction.begun() ? readNumbers(place) : std::nullopt;
    last.shift = std::max(last.shift, known ? known->shift : 0);
    header.shift = last.shift;
    header.num = nextNumber(known);
    reserved->reserve(header.num);
    last.number = header.num;
    StoredReceipt receipt;
    receipt.document = QSharedPointer<AbstractDocument>::create(header);
    auto stored = receipt;
    const auto isStored = known && insert(stored, ReceiptState::Open) && transaction.commit();
    return isStored ? stored : receipt;
}

bool Store::save(StoredReceipt &receipt, ReceiptState state)
{
    if (receipt.isStored() && receipt.state == state)
        return true;
    auto changed = receipt;
    changed.state = state;
    Transaction transaction(database);
    if (!transaction.begun() || !write(changed, state))
        return false;
    if (receipt.row != 0 && receipt.state != state &&
        !database.write("UPDATE receipts SET state = ?, changed = ? WHERE id = ?",
                        {nameOf(state), now(), changed.row}))
        return false;
    if (!transaction.commit())
        return false;
    receipt = changed;
    return true;
}

bool Store::saveCommitted(StoredReceipt &receipt, const ReportRecord &report,
                          const QList<QueuedMessage> &messages)
{
    auto changed = receipt;
    changed.state = ReceiptState::Committed;
    Transaction transaction(database);
    if (!transaction.begun() || !write(changed, changed.state))
        return false;
    // Whatever an earlier report has left is settled by this one.
    if (!database.write("DELETE FROM messages WHERE receipt = ?", {changed.row}) ||
        !database.write(
            "UPDATE receipts SET state = 'committed', report = ?, answer = ?, "
            "told = ?, changed = ? WHERE id = ?",
            {nameOf(report.outcome), kept(report.answer), kept(report.told), now(), changed.row}))
        return false;
    const auto put = [&](const QueuedMessage &message) {
        return DBQueueBroker::insert(database, message, changed.row);
    };
    if (!std::all_of(messages.begin(), messages.end(), put) || !transaction.commit())
        return false;
    receipt = changed;
    return true;
}

int Store::shift(const TillPlace &place)
{
    if (const auto known = readNumbers(place))
        last.shift = std::max(last.shift, known->shift);
    return last.shift;
}

bool Store::closeShift(const TillPlace &place)
{
    Transaction transaction(database);
    const auto known = transaction.begun() ? readNumbers(place) : std::nullopt;
    last.shift = std::max(last.shift, known ? known->shift : 0) + 1;
    return known && writeNumbers(place, {last.shift, known->number}) && transaction.commit();
}

QList<StoredReceipt> Store::receiptsIn(ReceiptState state, int limit, qint64 afterRow)
{
    const auto *const sql =
        isUnderWay(state)
            ? "SELECT id, document FROM receipts WHERE " UNDER_WAY "state = ? AND id > ? "
              "ORDER BY id LIMIT ?"
            : "SELECT id, document FROM receipts WHERE state = ? AND id > ? ORDER BY id LIMIT ?";
    const auto rows = database.read(sql, {nameOf(state), afterRow, limit});
    QList<StoredReceipt> receipts;
    for (const auto &row : rows.value_or(QList<Database::Row>()))
        receipts.append(read(row, state));
    return receipts;
}

std::optional<qint64> Store::countIn(ReceiptState state)
{
    const auto rows = database.read(
        isUnderWay(state) ? "SELECT count(*) FROM receipts WHERE " UNDER_WAY "state = ?"
                          : "SELECT count(*) FROM receipts WHERE state = ?",
        {nameOf(state)});
    return rows ? std::optional(rows->first().first().toLongLong()) : std::nullopt;
}

std::optional<StoredReceipt> Store::committedReceipt(int number)
{
    const auto rows = database.read("SELECT id, document FROM receipts WHERE number = ? "
                                    "AND state = 'committed' ORDER BY id DESC LIMIT 1",
                                    {number});
    if (!rows || rows->isEmpty())
        return std::nullopt;
    return read(rows->first(), ReceiptState::Committed);
}

std::optional<int> Store::removeBefore(const QDate &day, int limit)
{
    constexpr auto oldest =
        "SELECT id FROM receipts WHERE begun < ? AND state IN ('committed', 'cancelled') "
        "AND report NOT IN ('queued', 'refused') "
        "AND NOT EXISTS (SELECT 1 FROM messages WHERE receipt = receipts.id) "
        "ORDER BY begun LIMIT ?";
    const QVariantList values{day.toString(Qt::ISODate), limit};
    // Looked for first: a store with nothing to remove is not written.
    const auto found = database.read(oldest, values);
    if (!found || found->isEmpty())
        return found ? std::optional(0) : std::nullopt;
    const auto isDone = together([&] {
        const auto remove = [this](const Database::Row &row) {
            return database.write("DELETE FROM receipts WHERE id = ?", row).has_value();
        };
        if (!std::all_of(found->begin(), found->end(), remove))
            return false;
        const auto free = database.read("PRAGMA freelist_count");
        const auto pages = free ? free->first().first().toInt() : 0;
        // Qt lets SQLite take one step of it, which gives back one page.
        for (int page = 0; page < pages; ++page) {
            if (!database.read("PRAGMA incremental_vacuum"))
                return false;
        }
        return free.has_value();
    });
    return isDone ? std::optional(static_cast<int>(found->size())) : std::nullopt;
}

std::optional<Store::Numbers> Store::readNumbers(const TillPlace &place)
{
    const auto rows = database.read("SELECT shift, number FROM registers WHERE shop = ? "
                                    "AND cash = ?",
                                    {place.shopCode, place.cashCode});
    if (!rows)
        return std::nullopt;
    if (rows->isEmpty())
        return Numbers{};
    return Numbers{rows->first().at(0).toInt(), rows->first().at(1).toInt()};
}

bool Store::writeNumbers(const TillPlace &place, const Numbers &given)
{
    return database
        .write("INSERT INTO registers (shop, cash, shift, number) VALUES (?, ?, ?, ?) "
               "ON CONFLICT DO UPDATE SET shift = max(shift, excluded.shift), "
               "number = max(number, excluded.number)",
               {place.shopCode, place.cashCode, given.shift, given.number})
        .has_value();
}

/// The number after the last one given; behind all that may have been given when nobody knows.
int Store::nextNumber(const std::optional<Numbers> &known)
{
    const auto given = std::max(known ? known->number : 0, last.number);
    return (given > 0 ? given : reserved->highest()) + 1;
}

bool Store::insert(StoredReceipt &receipt, ReceiptState state)
{
    const auto &header = receipt.document->getHeader();
    const auto inserted = database.write(
        "INSERT INTO receipts (shop, cash, shift, number, kind, begun, state, changed, document) "
        "VALUES (?, ?, ?, ?, ?, ?, ?, ?, CAST(? AS TEXT))",
        {header.shopCode, header.cashCode, header.shift, header.num, header.kind,
         header.dateTimeBeg.toString(Qt::ISODate), nameOf(state), now(),
         jsonOf(*receipt.document)});
    if (!inserted)
        return false;
    receipt.row = database.lastRow();
    receipt.revision = receipt.document->getRevision();
    receipt.state = state;
    return writeNumbers({header.shopCode, header.cashCode}, {header.shift, header.num});
}

/// Stores what has changed of the document, as part of a transaction; `state` is that of a receipt
/// that the store does not know yet.
bool Store::write(StoredReceipt &receipt, ReceiptState state)
{
    if (receipt.row == 0)
        return insert(receipt, state);
    if (receipt.isStored())
        return true;
    receipt.revision = receipt.document->getRevision();
    return database
        .write("UPDATE receipts SET document = CAST(? AS TEXT), changed = ? WHERE id = ?",
               {jsonOf(*receipt.document), now(), receipt.row})
        .has_value();
}

/// The receipt of a row; without a document when that cannot be read.
StoredReceipt Store::read(const Database::Row &row, ReceiptState state)
{
    StoredReceipt receipt;
    receipt.row = row.at(0).toLongLong();
    receipt.state = state;
    unreadable.clear();
    const auto json = QJsonDocument::fromJson(row.at(1).toString().toUtf8()).object();
    receipt.document = documentjson::fromJson(json, unreadable);
    if (receipt.document)
        receipt.revision = receipt.document->getRevision();
    return receipt;
}

} // namespace till
