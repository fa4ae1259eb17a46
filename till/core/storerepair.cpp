#include "till/core/damagedfile.h"
#include "till/core/deliverer.h"
#include "till/core/reservednumbers.h"
#include "till/core/store.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <limits>

namespace till {

QString Store::prepare()
{
    // All of it is read only for a reason: that takes a second for 100,000 receipts.
    if (database.open() && countIn(ReceiptState::Committing) &&
        !QFileInfo::exists(database.damageMark()))
        return {};
    if (const auto damage = database.findDamage(); !damage || damage->isEmpty()) {
        if (damage)
            QFile::remove(database.damageMark());
        return lastError();
    }
    // Read anew: what is put aside must not be a fault that passes.
    database.close();
    const auto damage = database.findDamage();
    if (!damage || damage->isEmpty())
        return lastError();
    const auto left = readUnfinished();
    database.close();
    const auto place = putAside(database.file(), QFileInfo(database.file()).path());
    auto note = QStringLiteral("%1; %2").arg(*damage, place);
    // One that could not be moved has it all already.
    if (QFileInfo::exists(database.file()))
        return note;
    QFile::remove(database.damageMark());
    if (takeUp(left))
        return note;
    return QStringLiteral("%1; %2").arg(note, lastError());
}

/// What is still to be done with a damaged store, as far as it can be read.
Store::Unfinished Store::readUnfinished()
{
    Unfinished left;
    for (const auto state : {ReceiptState::Committing, ReceiptState::Open}) {
        for (const auto &receipt : receiptsIn(state, std::numeric_limits<int>::max())) {
            if (receipt.document)
                left.receipts.append(receipt);
        }
    }
    // One by one: those before the damage can be read.
    DBQueueBroker broker(database.file());
    for (auto message = broker.first(loyaltyQueue()); message;
         message = broker.next(loyaltyQueue(), message->id))
        left.messages.append(*message);
    if (broker.lastError().isEmpty())
        return left;
    // Those behind it are made once more from their receipts.
    const auto rows = database.read("SELECT id, document FROM receipts WHERE report = 'queued' AND "
                                    "state = 'committed' ORDER BY id");
    for (const auto &row : rows.value_or(QList<Database::Row>())) {
        if (const auto receipt = read(row, ReceiptState::Committing); receipt.document)
            left.receipts.append(receipt);
    }
    return left;
}

/// Takes what was read of a damaged store into a new one.
bool Store::takeUp(const Unfinished &left)
{
    return together([&] {
        const auto isTaken = [this](const StoredReceipt &receipt) {
            const auto &header = receipt.document->getHeader();
            return adopt(receipt.document, receipt.state) &&
                   adoptNumbers({header.shopCode, header.cashCode}, header.shift,
                                reserved->highest());
        };
        const auto isPut = [this](const QueuedMessage &message) {
            return DBQueueBroker::insert(database, message, 0);
        };
        return std::all_of(left.receipts.begin(), left.receipts.end(), isTaken) &&
               std::all_of(left.messages.begin(), left.messages.end(), isPut);
    });
}

} // namespace till
