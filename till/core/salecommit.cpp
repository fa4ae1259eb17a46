#include "till/core/answertext.h"
#include "till/core/sale.h"
#include "till/core/toldtexts.h"

#include <host/abstractdocument.h>
#include <host/basicloyaltysystem.h>
#include <host/dbqueuebroker.h>
#include <host/restclient.h>

#include <log4qt/logger.h>
#include <log4qt/logmanager.h>

#include <QElapsedTimer>

#include <algorithm>
#include <utility>

namespace till {

namespace {

/// How many receipts are reported one after the other, and for how many milliseconds another one is
/// begun: each may cost the cashier the time-out of the service.
constexpr int receiptsAtOnce = 3;
constexpr qint64 patience = 1'000;

const Log4Qt::Logger &logger()
{
    static const auto *const sale = Log4Qt::LogManager::logger(QStringLiteral("till.sale"));
    return *sale;
}

int numberOf(const StoredReceipt &receipt)
{
    return receipt.document->getHeader().num;
}

/// What has become of the report, by the messages that are left of it.
Report outcomeOf(const ReportRecord &report, const QList<QueuedMessage> &messages)
{
    const auto isParked = [](const QueuedMessage &message) { return message.isParked; };
    if (std::any_of(messages.begin(), messages.end(), isParked))
        return Report::Refused;
    return messages.isEmpty() ? report.outcome : Report::Queued;
}

} // namespace

void Sale::recover()
{
    reportInterrupted();
    if (const auto left = parts.store.countIn(ReceiptState::Committing).value_or(0))
        emit happened({.kind = SaleEvent::Kind::StillToReport, .number = static_cast<int>(left)});
    for (const auto &receipt : parts.store.receiptsIn(ReceiptState::Committing, receiptsAtOnce)) {
        if (!receipt.document)
            tellUnreadable(receipt);
    }
    for (const auto &receipt : parts.store.receiptsIn(ReceiptState::Open, receiptsAtOnce)) {
        if (!receipt.document)
            tellUnreadable(receipt);
        else if (!current.document)
            reopen(receipt);
    }
}

void Sale::reopen(const StoredReceipt &receipt)
{
    current = receipt;
    restore(current.document);
    emit happened({.kind = SaleEvent::Kind::Reopened,
                   .number = numberOf(current),
                   .sum = current.document->getTotal()});
}

void Sale::commit()
{
    if (!hasReceipt())
        return;
    if (current.document->getGoodsItems().isEmpty()) {
        refuse({.obstacle = Obstacle::NoPositions});
        return;
    }
    if (!parts.system.requestCommit(current.document)) {
        refuse({.obstacle = Obstacle::LoyaltySystem, .text = parts.system.getLastErrorString()});
        return;
    }
    // From here on a start commits it again, until it is stored as committed. A failure shows again
    // then.
    (void)parts.store.save(current, ReceiptState::Committing);
    const auto receipt = std::exchange(current, {});
    const auto report = handOver(receipt, std::exchange(isUnstoredTold, false));
    emit happened({.kind = SaleEvent::Kind::Committed,
                   .number = numberOf(receipt),
                   .sum = receipt.document->getTotal(),
                   .report = report});
    reportInterrupted();
    emit messagesQueued();
}

bool Sale::report(int number)
{
    const auto receipt = parts.store.committedReceipt(number);
    if (!receipt || !receipt->document) {
        if (receipt)
            tellUnreadable(*receipt);
        refuse({.number = number,
                .obstacle = Obstacle::UnknownReceipt,
                .text = parts.store.lastError()});
        return false;
    }
    const auto outcome = reportAgain(*receipt);
    if (current.document)
        restore(current.document);
    emit messagesQueued();
    return outcome != Report::Refused;
}

QList<int> Sale::unstored()
{
    if (current.document && !current.isStored())
        save();
    storeCommitted();
    QList<int> numbers;
    if (current.document && !current.isStored())
        numbers.append(numberOf(current));
    for (const auto &receipt : std::as_const(committed))
        numbers.append(numberOf(receipt.receipt));
    return numbers;
}

/// Makes a receipt the one at hand, with what it says of the holder.
void Sale::restore(const QSharedPointer<AbstractDocument> &receipt)
{
    // A receipt without a card leaves the system's holder as it is.
    parts.system.clearLoyaltyData();
    attach(receipt);
    if (!parts.system.restoreLoyaltySystem())
        logger().warn(QStringLiteral("the loyalty data is not restored: %1"),
                      parts.system.getLastErrorString());
}

/// Has the loyalty system report the receipt at hand, and stores what became of it. `isTold` says
/// whether the cashier knows of it that it is not in the store.
Report Sale::handOver(const StoredReceipt &receipt, bool isTold)
{
    const auto number = numberOf(receipt);
    logger().info(QStringLiteral("receipt %1 goes to the loyalty system"), number);
    auto *const broker = Singleton<DBQueueBroker>::instance();
    parts.told.take();
    // No lock is held while the service is asked: the messages are stored with the receipt.
    broker->beginBatch();
    const auto isAccepted = parts.system.commit(receipt.document);
    const auto messages = broker->takeBatch();
    UnstoredReceipt unstored{receipt, {Report::None, {}, parts.told.take()}, isTold};
    if (!isAccepted)
        unstored.report.told = parts.system.getLastErrorString();
    if (!isAccepted || !unstored.report.told.isEmpty())
        unstored.report.outcome = Report::Refused;
    else if (receipt.document->getKind() == DocumentHeader::sale)
        unstored.report.outcome = Report::Reported;
    if (unstored.report.outcome == Report::Refused)
        unstored.report.answer = answerText(RestClient::lastResponse().responseObject());
    parts.system.clearAfterClose();
    parts.system.clearLoyaltyData();
    attach({});

    parts.unstoredMessages.add(number, messages);
    const auto outcome = outcomeOf(unstored.report, messages);
    committed.append(unstored);
    storeCommitted();
    if (!committed.isEmpty()) {
        committed.last().isTold = true;
        tellUnstored(number);
    }
    return outcome;
}

/// Stores the committed receipts that are only in memory, oldest first.
void Sale::storeCommitted()
{
    while (!committed.isEmpty()) {
        auto &next = committed.first();
        const auto number = numberOf(next.receipt);
        const auto messages = parts.unstoredMessages.of(number);
        auto report = next.report;
        report.outcome = outcomeOf(report, messages);
        if (!parts.store.saveCommitted(next.receipt, report, messages))
            return;
        parts.unstoredMessages.forget(number);
        if (committed.takeFirst().isTold)
            emit happened({.kind = SaleEvent::Kind::StoredLate, .number = number});
    }
}

Report Sale::reportAgain(const StoredReceipt &receipt)
{
    restore(receipt.document);
    const auto outcome = handOver(receipt, false);
    emit happened(
        {.kind = SaleEvent::Kind::ReportedAgain, .number = numberOf(receipt), .report = outcome});
    return outcome;
}

/// Catches up on receipts whose commit was interrupted, as far as that does not make the cashier
/// wait.
void Sale::reportInterrupted()
{
    if (!committed.isEmpty())
        return; // among them may be one that the store still knows as being committed
    QElapsedTimer timer;
    timer.start();
    qint64 last = 0;
    for (int tried = 0; tried < receiptsAtOnce && timer.elapsed() < patience;) {
        const auto next = parts.store.receiptsIn(ReceiptState::Committing, 1, last);
        if (next.isEmpty())
            return;
        last = next.first().row;
        if (!next.first().document)
            continue; // told at the start
        reportAgain(next.first());
        if (!committed.isEmpty())
            return;
        ++tried;
    }
}

void Sale::tellUnreadable(const StoredReceipt &receipt)
{
    emit happened({.kind = SaleEvent::Kind::ReceiptUnreadable,
                   .number = static_cast<int>(receipt.row),
                   .text = parts.store.documentError()});
}

} // namespace till
