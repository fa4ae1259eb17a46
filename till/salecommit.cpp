#include "till/sale.h"

#include "till/console.h"
#include "till/numbers.h"
#include "till/receiptcounter.h"
#include "till/receiptstore.h"

#include <host/abstractdocument.h>
#include <host/basicloyaltysystem.h>
#include <host/dbqueuebroker.h>

#include <utility>

namespace till {

namespace {

/// How many receipts are reported one after the other: each may cost the cashier the time-out of
/// the service.
constexpr int receiptsAtOnce = 3;

} // namespace

void Sale::recover()
{
    int tried = 0;
    for (const auto &name : parts.store.committing()) {
        const auto file = parts.store.committingFile(name);
        QString error;
        const auto receipt = parts.store.load(file, error);
        if (!receipt) {
            parts.console.line(error);
            continue;
        }
        // What the queue could not take just now it would not take for the next receipt.
        if (tried == receiptsAtOnce || !pending.isEmpty()) {
            pending.append(receipt);
            continue;
        }
        ++tried;
        restore(receipt, file);
        if (handOver(receipt))
            parts.console.line(
                QStringLiteral("Receipt %1, whose commit was interrupted, is committed.")
                    .arg(receipt->getHeader().num));
    }
    if (!pending.isEmpty())
        parts.console.line(
            QStringLiteral("Receipts still to be reported: %1; up to %2 go with each commit.")
                .arg(pending.size())
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
    if (const auto error = parts.store.beginCommit(name))
        parts.console.line(QStringLiteral("[not saved] %1").arg(*error));
    attach(document, parts.store.isOpenFileFree() ? parts.store.committingFile(name) : QString());
    const auto receipt = std::exchange(document, {});
    const auto safe = handOver(receipt);
    parts.console.line(QStringLiteral("Receipt %1 is committed, total %2.")
                           .arg(receipt->getHeader().num)
                           .arg(moneyText(receipt->getTotal())));
    // What the queue could not take just now it would not take for an older receipt.
    if (safe)
        retryPending();
    committed();
}

/// Makes a receipt the one at hand, with what its file says of the holder.
bool Sale::restore(const Receipt &receipt, const QString &file)
{
    // A receipt without a card leaves the system's holder as it is.
    parts.system.clearLoyaltyData();
    attach(receipt, file);
    return parts.system.restoreLoyaltySystem();
}

/// Has the loyalty system commit the receipt at hand. \return Whether its order is safe.
bool Sale::handOver(const Receipt &receipt)
{
    auto *const broker = Singleton<DBQueueBroker>::instance();
    const auto failuresBefore = broker->failedPuts();
    if (!parts.system.commit(receipt))
        parts.console.line(parts.system.getLastErrorString());
    const auto safe = broker->failedPuts() == failuresBefore;
    parts.system.clearAfterClose();
    parts.system.clearLoyaltyData();
    attach({}, {});
    if (!safe) {
        pending.append(receipt);
        // The file may lack what came after the disk was full.
        const auto advice = parts.store.keep(receipt)
                                ? QStringLiteral("is not on the disk; it will be reported at the "
                                                 "next commit. Do not stop the till before.")
                                : QStringLiteral("is kept and will be reported at the next commit "
                                                 "or start.");
        parts.console.line(
            QStringLiteral("[not queued] %1\nReceipt %2 %3")
                .arg(broker->lastPutError(), QString::number(receipt->getHeader().num), advice));
    } else if (const auto error = parts.store.archive(ReceiptStore::nameOf(*receipt))) {
        parts.console.line(QStringLiteral("[not saved] %1").arg(*error));
    }
    return safe;
}

/// Tries again what the queue could not take.
void Sale::retryPending()
{
    for (int tried = 0; tried < receiptsAtOnce && !pending.isEmpty(); ++tried) {
        const auto receipt = pending.takeFirst();
        if (const auto error = parts.store.keep(receipt))
            parts.console.line(QStringLiteral("[not saved] %1").arg(*error));
        restore(receipt, {});
        if (!handOver(receipt))
            return;
        parts.console.line(QStringLiteral("Receipt %1 is reported.").arg(receipt->getHeader().num));
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
    document = receipt;
    const auto &header = document->getHeader();
    parts.counter.continueFrom(header.shift, header.num);
    const auto restored = restore(document, parts.store.openFile());
    parts.console.line(QStringLiteral("Receipt %1 is open again: %2 positions, total %3.")
                           .arg(header.num)
                           .arg(document->getGoodsItems().size())
                           .arg(moneyText(document->getTotal())));
    if (!restored)
        parts.console.line(parts.system.getLastErrorString());
}

} // namespace till
