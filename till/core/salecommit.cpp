#include "till/core/sale.h"

#include "till/console/console.h"
#include "till/core/numbers.h"
#include "till/receiptcounter.h"
#include "till/receiptstore.h"

#include <host/abstractdocument.h>
#include <host/basicloyaltysystem.h>
#include <host/dbqueuebroker.h>

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

QString numberOf(const AbstractDocument &receipt)
{
    return QString::number(receipt.getHeader().num);
}

} // namespace

void Sale::recover()
{
    for (const auto &name : parts.store.committing()) {
        QString error;
        const auto receipt = parts.store.load(parts.store.committingFile(name), error);
        if (!receipt) {
            parts.console.line(error);
            continue;
        }
        parts.counter.continueFrom(receipt->getHeader().shift, receipt->getHeader().num);
        unfinished.append({receipt});
    }
    reportUnfinished();
    const auto left = std::count_if(unfinished.cbegin(), unfinished.cend(), isUnreported);
    if (left > 0)
        parts.console.line(
            QStringLiteral("Receipts still to be reported: %1; up to %2 go with each commit.")
                .arg(left)
                .arg(receiptsAtOnce));
    if (parts.store.hasOpenReceipt())
        recoverOpenReceipt();
}

void Sale::commit()
{
    if (!hasReceipt())
        return;
    if (document->getGoodsItems().isEmpty()) {
        parts.console.line(QStringLiteral("The receipt has no positions."));
        return;
    }
    if (!parts.system.requestCommit(document)) {
        parts.console.line(parts.system.getLastErrorString());
        return;
    }
    save();
    const auto name = ReceiptStore::nameOf(*document);
    tellUnsaved(parts.store.beginCommit(name));
    Committed committed{std::exchange(document, {}), isSaved};
    file(committed);
    const auto &receipt = committed.receipt;
    attach(receipt, parts.store.isOpenFileFree() ? parts.store.committingFile(name) : QString());
    const auto isReported = handOver(committed);
    parts.console.line(QStringLiteral("Receipt %1 is committed, total %2.")
                           .arg(numberOf(*receipt), moneyText(receipt->getTotal())));
    // What the queue could not take just now it would not take for an older receipt.
    if (isReported)
        reportUnfinished();
    afterCommit();
}

bool Sale::mayEnd()
{
    if (document)
        save();
    else
        reportUnfinished();
    fileUnfinished();
    tellUnsaved(parts.counter.save());
    QStringList inMemory;
    if (document && !isSaved)
        inMemory.append(numberOf(*document));
    for (const auto &committed : std::as_const(unfinished)) {
        if (!committed.isOnDisk)
            inMemory.append(numberOf(*committed.receipt));
    }
    if (!inMemory.isEmpty())
        parts.console.line(
            QStringLiteral("Only in memory: receipt %1.").arg(inMemory.join(QLatin1String(", "))));
    return inMemory.isEmpty();
}

/// Makes a receipt the one at hand, with what it says of the holder.
bool Sale::restore(const Receipt &receipt, const QString &file)
{
    // A receipt without a card leaves the system's holder as it is.
    parts.system.clearLoyaltyData();
    attach(receipt, file);
    if (parts.system.restoreLoyaltySystem())
        return true;
    parts.console.line(parts.system.getLastErrorString());
    return false;
}

/// Has the loyalty system report the receipt at hand. \return Whether its order is safe.
bool Sale::handOver(Committed committed)
{
    // The loyalty system does not look whether the queue takes a message, and the status of an
    // order must not be queued without its creation.
    auto *const broker = Singleton<DBQueueBroker>::instance();
    logger().info(QStringLiteral("receipt %1 goes to the loyalty system"),
                  ReceiptStore::nameOf(*committed.receipt));
    broker->beginBatch();
    const auto isAccepted = parts.system.commit(committed.receipt);
    const auto isQueued = broker->endBatch();
    committed.isReported = isAccepted && isQueued;
    if (!isAccepted)
        parts.console.line(parts.system.getLastErrorString());
    if (!isQueued)
        parts.console.line(QStringLiteral("[not queued] %1").arg(broker->lastError()));
    parts.system.clearAfterClose();
    parts.system.clearLoyaltyData();
    attach({}, {});

    const auto error = file(committed);
    const auto number = numberOf(*committed.receipt);
    if (committed.isReported) {
        tellUnsaved(error);
        if (!committed.isOnDisk)
            parts.console.line(QStringLiteral("Receipt %1 is reported, but not on the disk. Do not "
                                              "stop the till before there is room.")
                                   .arg(number));
    } else if (committed.isOnDisk)
        parts.console.line(
            QStringLiteral("Receipt %1 is kept and will be reported at the next commit or start.")
                .arg(number));
    else
        parts.console.line(QStringLiteral("Receipt %1 is not on the disk; it will be reported at "
                                          "the next commit. Do not stop the till before.")
                               .arg(number));
    if (error || !committed.isReported)
        unfinished.append(committed);
    return committed.isReported;
}

/// Brings a receipt's file up to date and to its place. \return Why that failed.
std::optional<QString> Sale::file(Committed &committed)
{
    std::optional<QString> error;
    if (committed.isReported)
        error = committed.isOnDisk ? parts.store.archive(ReceiptStore::nameOf(*committed.receipt))
                                   : parts.store.writeCommitted(committed.receipt);
    else if (!committed.isOnDisk)
        error = parts.store.writeCommitting(committed.receipt);
    committed.isOnDisk = committed.isOnDisk || !error;
    return error;
}

/// Catches up on what the disk could not take.
void Sale::fileUnfinished()
{
    for (auto committed = unfinished.begin(); committed != unfinished.end();) {
        const auto isFinished = !file(*committed) && committed->isReported;
        committed = isFinished ? unfinished.erase(committed) : committed + 1;
    }
}

/// Catches up on what the queue could not take, as far as that does not make the cashier wait.
void Sale::reportUnfinished()
{
    QElapsedTimer timer;
    timer.start();
    for (int tried = 0; tried < receiptsAtOnce && timer.elapsed() < patience; ++tried) {
        const auto next = std::find_if(unfinished.begin(), unfinished.end(), isUnreported);
        if (next == unfinished.end())
            return;
        const auto committed = *next;
        unfinished.erase(next);
        if (!restore(committed.receipt, {})) {
            unfinished.append(committed);
            attach({}, {});
            return;
        }
        if (!handOver(committed))
            return;
        parts.console.line(
            QStringLiteral("Receipt %1 is reported.").arg(numberOf(*committed.receipt)));
    }
}

void Sale::recoverOpenReceipt()
{
    QString error;
    const auto receipt = parts.store.load(parts.store.openFile(), error);
    if (!receipt) {
        parts.console.line(error);
        return;
    }
    const auto &header = receipt->getHeader();
    parts.counter.continueFrom(header.shift, header.num);
    if (parts.store.isCommitted(ReceiptStore::nameOf(*receipt))) {
        const auto file = parts.store.openFile();
        parts.console.line(QStringLiteral("%1: its receipt %2 is committed already; %3")
                               .arg(file, numberOf(*receipt), parts.store.setAside(file)));
        return;
    }
    document = receipt;
    restore(document, parts.store.openFile());
    parts.console.line(QStringLiteral("Receipt %1 is open again: %2 positions, total %3.")
                           .arg(header.num)
                           .arg(document->getGoodsItems().size())
                           .arg(moneyText(document->getTotal())));
}

} // namespace till
