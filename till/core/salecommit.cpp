#include "till/core/sale.h"

#include <host/abstractdocument.h>
#include <host/basicloyaltysystem.h>
#include <host/clock.h>
#include <host/dbqueuebroker.h>
#include <host/httpresponse.h>

#include <log4qt/logger.h>
#include <log4qt/logmanager.h>

#include <utility>

using namespace Qt::StringLiterals;

namespace till {

namespace {

/// Each interrupted receipt may cost the cashier the service's time-out: a commit reports only so
/// many, and begins none after so long.
constexpr int receiptsAtOnce = 3;
constexpr std::chrono::seconds patience{1};

const Log4Qt::Logger &logger()
{
    static const auto *const sale = Log4Qt::LogManager::logger(u"till.sale"_s);
    return *sale;
}

} // namespace

void Sale::recover()
{
    interrupted = store.rowsIn(ReceiptState::Committing).value_or(QList<qint64>());
    reportInterrupted();
    if (!interrupted.isEmpty())
        emit happened({.kind = SaleEvent::Kind::StillToReport,
                       .number = static_cast<int>(interrupted.size())});
    reopen();
}

/// Opens the latest open receipt. There is an older one when the till was killed before the disk
/// took a cancellation.
void Sale::reopen()
{
    const auto rows = store.rowsIn(ReceiptState::Open).value_or(QList<qint64>());
    for (auto row = rows.crbegin(); row != rows.crend(); ++row) {
        const auto receipt = store.read(*row);
        if (!receipt.document) {
            tellUnreadable(receipt);
            continue;
        }
        const auto isFirst = current.isNull();
        if (isFirst) {
            current = receipt.document;
            restore(current);
        }
        emit happened({.kind = isFirst ? SaleEvent::Kind::Reopened : SaleEvent::Kind::OpenToo,
                       .number = receipt.document->getHeader().num,
                       .sum = receipt.document->getTotal()});
    }
}

void Sale::commit()
{
    if (!hasReceipt())
        return;
    if (current->getGoodsItems().isEmpty()) {
        refuse({.obstacle = Obstacle::NoPositions});
        return;
    }
    if (!system.requestCommit(current)) {
        refuse({.obstacle = Obstacle::LoyaltySystem, .text = system.getLastErrorString()});
        return;
    }
    // If the till dies from here on, the next start commits this receipt again.
    const auto number = current->getHeader().num;
    tellSaved(store.save(current, ReceiptState::Committing), number);
    const auto receipt = std::exchange(current, {});
    const auto report = handOver(receipt);
    emit happened({.kind = SaleEvent::Kind::Committed,
                   .number = number,
                   .sum = receipt->getTotal(),
                   .report = report});
    reportInterrupted();
    emit messagesQueued();
}

bool Sale::report(int number)
{
    const auto receipt = store.committedReceipt(number);
    if (!receipt.document) {
        if (receipt.row > 0)
            tellUnreadable(receipt);
        refuse({.number = number,
                .obstacle = Obstacle::UnknownReceipt,
                .text = receipt.row > 0 ? QString() : receipt.error});
        return false;
    }
    const auto outcome = reportAgain(receipt.document);
    if (current)
        restore(current);
    emit messagesQueued();
    return outcome != Report::Refused;
}

void Sale::noteAnswer(const http::Response &response)
{
    answer = response.responseObject();
}

/// Makes the receipt the current one and restores its loyalty data.
void Sale::restore(const QSharedPointer<AbstractDocument> &receipt)
{
    // Restoring a receipt without a card would leave the holder before in place.
    system.clearLoyaltyData();
    attach(receipt);
    if (!system.restoreLoyaltySystem())
        logger().warn(u"the loyalty data is not restored: %1"_s, system.getLastErrorString());
}

/// Has the loyalty system report the current receipt, and stores the outcome.
Report Sale::handOver(const QSharedPointer<AbstractDocument> &receipt)
{
    const auto number = receipt->getHeader().num;
    logger().info(u"receipt %1 goes to the loyalty system"_s, number);
    auto *const broker = Singleton<DBQueueBroker>::instance();
    told.clear();
    answer = {};
    broker->setSink(this);
    const auto isAccepted = system.commit(receipt);
    broker->setSink(nullptr);
    const auto messages = std::exchange(queued, {});

    ReportRecord report{Report::None, {}, told.join(u'\n')};
    if (!isAccepted)
        report.told = system.getLastErrorString();
    if (!isAccepted || !report.told.isEmpty())
        report.outcome = Report::Refused;
    else if (receipt->getKind() == DocumentHeader::sale)
        report.outcome = Report::Reported;
    if (report.outcome == Report::Refused)
        report.answer = answerText(answer);
    system.clearAfterClose();
    system.clearLoyaltyData();
    attach({});
    tellSaved(store.saveReport(receipt, report, messages), number);
    return outcomeOf(report, messages);
}

/// Called by the loyalty system during a commit. The message is stored with the receipt.
bool Sale::put(const QString &queue, const QJsonObject &message, const QString &tag)
{
    QueuedMessage put;
    put.queue = queue;
    put.message = message;
    put.tag = tag;
    put.queuedAt = Clock::now();
    queued.append(put);
    return true;
}

Report Sale::reportAgain(const QSharedPointer<AbstractDocument> &receipt)
{
    restore(receipt);
    const auto outcome = handOver(receipt);
    emit happened({.kind = SaleEvent::Kind::ReportedAgain,
                   .number = receipt->getHeader().num,
                   .report = outcome});
    return outcome;
}

/// Reports receipts whose commit was interrupted, a few so that the cashier hardly waits.
void Sale::reportInterrupted()
{
    const auto begin = Clock::steady();
    for (int tried = 0;
         tried < receiptsAtOnce && !interrupted.isEmpty() && Clock::steady() - begin < patience;) {
        const auto receipt = store.read(interrupted.takeFirst());
        if (receipt.document) {
            reportAgain(receipt.document);
            ++tried;
        } else {
            tellUnreadable(receipt);
        }
    }
}

void Sale::tellUnreadable(const StoredReceipt &receipt)
{
    emit happened({.kind = SaleEvent::Kind::ReceiptUnreadable,
                   .number = static_cast<int>(receipt.row),
                   .text = receipt.error});
}

} // namespace till
