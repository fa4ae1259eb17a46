#include "till/core/store.h"

#include "till/core/storeschema.h"

#include <host/documentjson.h>
#include <host/privatefile.h>

#include <log4qt/logger.h>
#include <log4qt/logmanager.h>

#include <QJsonDocument>
#include <QMetaMethod>
#include <QUrlQuery>

#include <algorithm>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

using namespace Qt::StringLiterals;

namespace till {

namespace {

constexpr int usualPatience = 2'000; // milliseconds

QString unsavedFile(const QString &directory)
{
    return directory + "/unsaved"_L1;
}

/// The number in a file of one line; 0 for none.
int numberIn(const QString &file)
{
    constexpr qint64 enough = 32;
    return privatefile::read(file, enough).value_or(QByteArray()).trimmed().toInt();
}

QString outcomeOf(const http::Response &response)
{
    if (response.getTransportCode() == RestClient::notSent)
        return u"not_sent"_s;
    const auto status = response.responseObject().value("status"_L1);
    if (status.isUndefined())
        return u"no_answer"_s; // or somebody else answered
    return status == "Success"_L1 ? u"success"_s : u"refused"_s;
}

QByteArray jsonOf(const QJsonObject &object)
{
    return object.isEmpty() ? QByteArray() : QJsonDocument(object).toJson(QJsonDocument::Compact);
}

} // namespace

Store::Call::~Call()
{
    store.noteUnsaved();
    const auto late = std::exchange(store.late, {});
    std::optional<DeliveryState> state;
    if (std::exchange(store.messagesChanged, false) &&
        store.isSignalConnected(QMetaMethod::fromSignal(&Store::deliveryChanged))) {
        state = store.readDeliveryState();
        if (*state == std::exchange(store.toldState, *state))
            state.reset();
    }
    lock.unlock();
    for (const auto number : late)
        emit store.savedLate(number);
    if (state)
        emit store.deliveryChanged(*state);
}

Store::Store(const QString &directory, Access access)
    : directory(directory)
    , database(fileIn(directory), storeSchema())
    , reserved(numberIn(directory + "/numbers"_L1))
{
    if (access == Access::ReadOnly)
        database.setReadOnly();
}

Store::~Store()
{
    const std::scoped_lock lock(mutex);
    (void)flush(usualPatience);
    noteUnsaved();
}

QString Store::fileIn(const QString &directory)
{
    return directory + "/till.db"_L1;
}

int Store::unsavedIn(const QString &directory)
{
    return numberIn(unsavedFile(directory));
}

QSharedPointer<AbstractDocument> Store::newReceipt(const TillPlace &where, int kind)
{
    const Call call(*this);
    auto &given = numbersOf(where);
    given.number = (given.number > 0 ? given.number : reserved) + 1;
    reserveNumbers();
    numbersWait = true;

    DocumentHeader header;
    header.kind = kind;
    header.shopCode = where.shopCode;
    header.cashCode = where.cashCode;
    header.shift = given.shift;
    header.num = given.number;
    header.dateTimeBeg = QDateTime::fromSecsSinceEpoch(Clock::now().toSecsSinceEpoch());
    return QSharedPointer<AbstractDocument>::create(header);
}

Store::Saved Store::save(const QSharedPointer<AbstractDocument> &receipt, ReceiptState state)
{
    const Call call(*this);
    auto now = std::tuple(receipt, receipt->getRevision(), state);
    if (now == taken)
        return flush(0);
    taken = std::move(now);
    const auto patience = patienceOfWrites();
    take(receipt, state);
    return flush(patience);
}

Store::Saved Store::saveReport(const QSharedPointer<AbstractDocument> &receipt,
                               const ReportRecord &report, const QList<QueuedMessage> &messages)
{
    const Call call(*this);
    taken = {};
    messagesChanged = true;
    const auto patience = patienceOfWrites();
    auto &unsaved = take(receipt, ReceiptState::Committed);
    unsaved.record.report = report;
    unsaved.isReport = true;
    unsaved.messages = messages;
    for (auto &message : unsaved.messages)
        message.id = --lastInMemory;
    return flush(patience);
}

int Store::shift(const TillPlace &where)
{
    const Call call(*this);
    return numbersOf(where).shift;
}

Store::Saved Store::closeShift(const TillPlace &where)
{
    const Call call(*this);
    ++numbersOf(where).shift;
    numbersWait = true;
    return flush(usualPatience);
}

QList<int> Store::unsaved()
{
    const Call call(*this);
    (void)flush(0);
    QList<int> waiting;
    for (const auto &receipt : std::as_const(receipts))
        waiting.append(receipt.record.header.num);
    return waiting;
}

void Store::reopen()
{
    const Call call(*this);
    database.close();
}

void Store::count(const RestClient::Exchange &exchange)
{
    const Call call(*this);
    const std::chrono::duration<double> seconds = exchange.duration;
    counts.append({QUrlQuery(exchange.url).queryItemValue(u"operation"_s, QUrl::FullyDecoded),
                   outcomeOf(exchange.response), 1, seconds.count(),
                   Clock::now().toSecsSinceEpoch()});
}

/// Adds what has changed of a receipt to the unsaved writes.
Store::Unsaved &Store::take(const QSharedPointer<AbstractDocument> &receipt, ReceiptState state)
{
    auto *const found = findUnsaved(receipt->getHeader());
    auto &unsaved = found ? *found : receipts.emplaceBack();
    unsaved.document = receipt;
    unsaved.record.header = receipt->getHeader();
    unsaved.record.state = state;
    unsaved.record.changed = Clock::now();
    unsaved.head = jsonOf(documentjson::headToJson(*receipt));
    for (const auto number : receipt->takeChangedPositions())
        unsaved.positions.insert(number, jsonOf(documentjson::positionToJson(*receipt, number)));
    return unsaved;
}

/// The unsaved receipt with that number, time and place; null for none.
Store::Unsaved *Store::findUnsaved(const DocumentHeader &header)
{
    const auto isIt = [&](const Unsaved &unsaved) {
        const auto &other = unsaved.record.header;
        return header.num == other.num && header.dateTimeBeg == other.dateTimeBeg &&
               header.cashCode == other.cashCode && header.shopCode == other.shopCode;
    };
    const auto found = std::find_if(receipts.begin(), receipts.end(), isIt);
    return found == receipts.end() ? nullptr : &*found;
}

/// Another process's lock makes the cashier wait only once.
int Store::patienceOfWrites() const
{
    return receipts.isEmpty() ? usualPatience : 0;
}

/// Tries to save all unsaved writes. `patience` is the longest wait for a lock, in milliseconds.
Store::Saved Store::flush(int patience)
{
    // Counts are not worth a sync of their own; they go with the next write.
    if (receipts.isEmpty() && settled.isEmpty() && !numbersWait)
        return {};
    QHash<qint64, qint64> ids;
    database.setPatience(patience);
    const auto written = database.transact([&](auto &disk) { writeAll(disk, ids); });
    database.setPatience(usualPatience);
    for (auto &receipt : receipts) {
        if (written && receipt.isLate)
            late.append(receipt.record.header.num);
        receipt.isLate = true;
    }
    if (!written)
        return tl::unexpected(written.error());
    messagesChanged = messagesChanged || !settled.isEmpty() || !ids.isEmpty();
    savedIds.insert(ids);
    receipts.clear();
    settled.clear();
    counts.clear();
    numbersWait = false;
    return {};
}

/// The numbers given last at a register, by this store or another process's.
Store::RegisterNumbers &Store::numbersOf(const TillPlace &where)
{
    if (!(where == place)) {
        (void)flush(usualPatience);
        place = where;
        numbers = {};
    }
    const auto rows =
        database.run("SELECT shift, number FROM registers WHERE shop = ? AND cash = ?",
                     {place.shopCode, place.cashCode});
    if (rows && !rows->isEmpty()) {
        numbers.shift = std::max(numbers.shift, rows->first().at(0).toInt());
        numbers.number = std::max(numbers.number, rows->first().at(1).toInt());
    }
    return numbers;
}

/// Reserves the block of the number given last in a file beside the store. A number given twice
/// would make one order of two sales, so a till that lost its store goes on after the block.
void Store::reserveNumbers()
{
    constexpr int blockSize = 1'000;
    if (numbers.number <= reserved)
        return;
    reserved = (numbers.number / blockSize + 1) * blockSize;
    const auto file = directory + "/numbers"_L1;
    if (const auto written = privatefile::write(file, QByteArray::number(reserved) + '\n');
        !written) {
        const auto &logger = *Log4Qt::LogManager::logger(u"till.store"_s);
        logger.warn(u"%1: cannot be written: %2"_s, file, written.error());
        reserved = numbers.number; // the next number tries again
    }
}

/// Tells the monitor, which cannot see the till's memory. The file always has the same length, so
/// even a full disk takes the number.
void Store::noteUnsaved()
{
    const auto count = static_cast<int>(receipts.size());
    if (count == std::exchange(toldUnsaved, count))
        return;
    const auto descriptor = privatefile::open(unsavedFile(directory), O_WRONLY | O_CREAT);
    if (descriptor < 0)
        return;
    const auto text = QByteArray::number(count).leftJustified(8) + '\n';
    [[maybe_unused]] const auto written = ::pwrite(descriptor, text.constData(), text.size(), 0);
    ::close(descriptor);
}

} // namespace till
