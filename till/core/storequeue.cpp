#include "till/core/store.h"

#include "till/core/storeschema.h"

#include "interface/ordermessage.h"

#include <QJsonDocument>

#include <algorithm>
#include <utility>

namespace till {

namespace {

// How many accepted messages may await their removal, and for how long.
constexpr qsizetype groupSize = 100;
constexpr std::chrono::milliseconds groupTime{500};

#define MESSAGE_COLUMNS                                                                            \
    "m.id, m.queue, m.message, m.tag, m.queuedAt, m.tries, m.putOffSince, m.parked, m.lastError"

QueuedMessage messageOf(const Database::Row &row)
{
    return {
        .id = row.at(0).toLongLong(),
        .queue = row.at(1).toString(),
        .message = QJsonDocument::fromJson(row.at(2).toByteArray()).object(),
        .tag = row.at(3).toString(),
        .queuedAt = utcOf(row.at(4)),
        .tries = row.at(5).toInt(),
        .putOffSince = row.at(6).toLongLong() > 0 ? utcOf(row.at(6)) : QDateTime(),
        .isParked = row.at(7).toBool(),
        .lastError = row.at(8).toString(),
    };
}

} // namespace

QString loyaltyQueue()
{
    return lmmindbox::ordermessage::queue;
}

Store::Result<std::optional<QueuedMessage>> Store::nextMessage(bool unsavedOnly)
{
    const Call call(*this);
    if (!receipts.isEmpty())
        (void)flush(0);
    auto inMemory = nextInMemory();
    if (unsavedOnly)
        return inMemory;
    auto onDisk = nextOnDisk();
    return inMemory && !onDisk.value_or(std::nullopt) ? inMemory : onDisk;
}

/// The first waiting message on the disk that has no verdict and no unsaved replacement.
Store::Result<std::optional<QueuedMessage>> Store::nextOnDisk()
{
    if (const auto version = database.run("PRAGMA data_version")) {
        const auto before = std::exchange(dataVersion, version->first().first().toLongLong());
        messagesChanged = messagesChanged || before != dataVersion;
    }
    qint64 after = 0;
    for (const auto &[message, isAccepted] : std::as_const(settled))
        after = isAccepted || message.isParked ? std::max(after, message.id) : after;
    for (;;) {
        const auto rows =
            database.run("SELECT " MESSAGE_COLUMNS ", " HEADER_COLUMNS " FROM messages m "
                         "LEFT JOIN receipts r ON r.id = m.receipt "
                         "WHERE m.queue = ? AND m.parked = 0 AND m.id > ? ORDER BY m.id LIMIT 1",
                         {loyaltyQueue(), after});
        if (!rows)
            return tl::unexpected(rows.error());
        if (!rows->isEmpty()) {
            const auto &row = rows->first();
            const auto *const later = findUnsaved(headerOf(row.sliced(9)));
            if (!later || !later->isReport)
                return messageOf(row);
            after = row.first().toLongLong();
        } else if (settled.isEmpty() || !flush(0)) {
            return std::nullopt;
        } else {
            after = 0; // a message put back by hand may stand before those with a verdict
        }
    }
}

std::optional<QueuedMessage> Store::nextInMemory() const
{
    for (const auto &receipt : receipts) {
        for (const auto &message : receipt.messages) {
            if (!message.isParked && message.queue == loyaltyQueue())
                return message;
        }
    }
    return std::nullopt;
}

void Store::settle(QueuedMessage message, Verdict verdict, const QString &reason)
{
    const Call call(*this);
    messagesChanged = true;
    message.id = savedIds.value(message.id, message.id);
    message.isParked = verdict == Verdict::Refused;
    message.lastError = reason;
    ++message.tries;
    if (verdict == Verdict::PutOff && !message.putOffSince.isValid())
        message.putOffSince = Clock::now();
    const auto isAccepted = verdict == Verdict::Accepted;
    const auto isIt = [&](const QueuedMessage &other) { return other.id == message.id; };
    for (auto &receipt : receipts) {
        if (isAccepted)
            receipt.messages.removeIf(isIt);
        else
            std::replace_if(receipt.messages.begin(), receipt.messages.end(), isIt, message);
    }
    if (message.id < 0)
        return;
    if (settled.isEmpty())
        firstSettled = Clock::steady();
    settled.removeIf([&](const Settled &earlier) { return isIt(earlier.message); });
    settled.append({message, isAccepted});
    const auto isFull = settled.size() >= groupSize || Clock::steady() - firstSettled >= groupTime;
    if (isFull || !isAccepted)
        (void)flush(0);
}

Store::Result<QList<QueuedMessage>> Store::messages(bool parked, int limit)
{
    const Call call(*this);
    return rows(messageOf,
                "SELECT " MESSAGE_COLUMNS " FROM messages m "
                "WHERE m.queue = ? AND m.parked = ? ORDER BY m.id LIMIT ?",
                {loyaltyQueue(), parked ? 1 : 0, limit});
}

Store::Result<int> Store::setParked(const QList<qint64> &ids, bool parked)
{
    const Call call(*this);
    messagesChanged = true;
    int count = 0;
    const auto done = database.transact([&](auto &disk) {
        for (const auto id : ids)
            count +=
                static_cast<int>(disk.run("UPDATE messages SET parked = ?1, putOffSince = NULL, "
                                          "lastError = iif(?1, 'by hand', lastError) "
                                          "WHERE id = ?2 AND parked <> ?1 RETURNING id",
                                          {parked ? 1 : 0, id})
                                     .size());
    });
    return done.map([count] { return count; });
}

DeliveryState Store::deliveryState()
{
    const Call call(*this);
    if (!receipts.isEmpty())
        (void)flush(0);
    return readDeliveryState();
}

DeliveryState Store::readDeliveryState()
{
    const auto rows = database.run(
        "SELECT (SELECT count(*) FROM messages WHERE queue = ?1 AND parked = 0), "
        "(SELECT count(*) FROM messages WHERE queue = ?1 AND parked = 1), "
        "(SELECT count(*) FROM receipts WHERE state = 'committed' AND report = 'refused'), "
        "(SELECT queuedAt FROM messages WHERE queue = ?1 AND parked = 0 ORDER BY id LIMIT 1)",
        {loyaltyQueue()});
    if (!rows)
        return {.error = rows.error()};
    const auto &row = rows->first();
    DeliveryState state{.waiting = row.at(0).toLongLong(),
                        .parked = row.at(1).toLongLong(),
                        .refused = row.at(2).toLongLong()};
    for (const auto &[message, isAccepted] : std::as_const(settled)) {
        state.waiting -= isAccepted || message.isParked ? 1 : 0;
        state.parked += message.isParked ? 1 : 0;
    }
    for (const auto &receipt : std::as_const(receipts)) {
        for (const auto &message : receipt.messages)
            ++(message.isParked ? state.parked : state.waiting);
        state.refused += receipt.current().report.outcome == Report::Refused ? 1 : 0;
    }
    if (state.waiting > 0 && row.at(3).toLongLong() > 0)
        state.oldestWaiting = utcOf(row.at(3));
    else if (const auto first = nextInMemory())
        state.oldestWaiting = first->queuedAt;
    return state;
}

} // namespace till
