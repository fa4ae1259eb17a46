#include "till/core/sale.h"

#include "till/console/console.h"
#include "till/core/numbers.h"
#include "till/receiptcounter.h"
#include "till/receiptstore.h"
#include "till/console/receipttext.h"

#include <host/abstractdocument.h>
#include <host/basicloyaltysystem.h>
#include <host/session.h>

namespace till {

Sale::Sale(const SaleParts &parts)
    : parts(parts)
{}

Sale::~Sale()
{
    attach({}, {});
}

void Sale::open(int kind)
{
    if (!hasNoReceipt())
        return;
    DocumentHeader header;
    header.kind = kind;
    header.shopCode = parts.place.shopCode;
    header.cashCode = parts.place.cashCode;
    header.shift = parts.counter.getShift();
    header.dateTimeBeg = QDateTime::fromSecsSinceEpoch(QDateTime::currentSecsSinceEpoch());
    header.num = parts.counter.next();
    tellUnsaved(parts.counter.save());
    document = Receipt::create(header);
    save();
    parts.console.line(QStringLiteral("Receipt %1 is open.").arg(header.num));
}

void Sale::add(const QString &code, const QString &name, double price, double quantity)
{
    const auto total = document ? document->getTotal() : 0;
    if (price * quantity + total > maximumSum) {
        parts.console.line(
            QStringLiteral("A receipt's sum must not be above %1.").arg(moneyText(maximumSum)));
        return;
    }
    openIfNeeded();
    const auto item = document->addGoodsItem(code, name, price, quantity);
    save();
    parts.console.line(
        QStringLiteral("%1. %2 %3 x %4 = %5")
            .arg(item->getPosnum())
            .arg(name, quantityText(quantity), moneyText(price), moneyText(item->getSumb())));
}

void Sale::discount(int posnum, double sum, int campaignCode, int mode, int source)
{
    if (!hasReceipt())
        return;
    const auto item = document->findGoodsItem(posnum);
    if (!item) {
        parts.console.line(QStringLiteral("There is no position %1.").arg(posnum));
        return;
    }
    if (sum > item->getSumb()) {
        parts.console.line(QStringLiteral("The discount is larger than the position's sum, %1.")
                               .arg(moneyText(item->getSumb())));
        return;
    }
    document->addImpactDetail({posnum, campaignCode, mode, source, sum});
    save();
    parts.console.line(QStringLiteral("%1. %2 -%3 = %4")
                           .arg(posnum)
                           .arg(item->getName(), moneyText(sum), moneyText(item->getSumb())));
}

void Sale::show()
{
    if (hasReceipt())
        parts.console.line(receiptText(*document));
}

void Sale::enterCard(const QString &text)
{
    const auto answer = parts.system.getCardNumber({loyalty::CardNumberInputData::typed, text});
    if (!answer.success) {
        parts.console.line(answer.message.isEmpty()
                               ? QStringLiteral("The loyalty system does not take this number.")
                               : answer.message.toString());
        return;
    }
    openIfNeeded();
    // Not saved before the holder is known: a card alone must not survive a restart.
    auto record = QSharedPointer<DocumentCardRecord>::create(answer.number);
    document->setCardRecord(record);
    if (parts.system.identifyByCard(record, ECardNumberType::Typed)) {
        document->setCardRecord(record);
        save();
        parts.console.line(holderText(*document));
        return;
    }
    const auto error = parts.system.getLastErrorString();
    takeCardOff();
    save();
    parts.console.line(error.isEmpty() ? QStringLiteral("The holder cannot be identified.")
                                       : error);
    parts.console.line(QStringLiteral("There is no card on the receipt."));
}

void Sale::showHolder()
{
    if (hasReceipt())
        parts.console.line(holderText(*document));
}

void Sale::trigger(int actionCode)
{
    switch (parts.system.handle(control::Action(actionCode))) {
    case EContext::Result::Done:
        if (document)
            save();
        parts.console.line(QStringLiteral("Done."));
        break;
    case EContext::Result::Failed:
        parts.console.line(QStringLiteral("Failed."));
        break;
    case EContext::Result::Skipped:
        parts.console.line(QStringLiteral("Nothing was done."));
        break;
    case EContext::Result::Unhandled:
        parts.console.line(QStringLiteral("Nothing serves action %1.").arg(actionCode));
        break;
    }
}

void Sale::clearLoyaltyData()
{
    takeCardOff();
    if (document)
        save();
    parts.console.line(QStringLiteral("The loyalty data is cleared."));
}

void Sale::cancel()
{
    if (!hasReceipt())
        return;
    if (!parts.system.cancel(document)) {
        parts.console.line(parts.system.getLastErrorString());
        return;
    }
    const auto number = document->getHeader().num;
    takeCardOff();
    attach({}, {});
    document.reset();
    tellUnsaved(parts.store.discard());
    parts.console.line(QStringLiteral("Receipt %1 is cancelled.").arg(number));
}

void Sale::closeShift()
{
    if (!hasNoReceipt())
        return;
    const auto closed = parts.counter.getShift();
    parts.counter.closeShift();
    tellUnsaved(parts.counter.save());
    parts.console.line(QStringLiteral("Shift %1 is closed, shift %2 begins.")
                           .arg(closed)
                           .arg(parts.counter.getShift()));
}

bool Sale::hasReceipt()
{
    if (!document)
        parts.console.line(QStringLiteral("No receipt is open."));
    return !document.isNull();
}

bool Sale::hasNoReceipt()
{
    if (document)
        parts.console.line(QStringLiteral("Receipt %1 is open; commit or cancel it first.")
                               .arg(document->getHeader().num));
    return document.isNull();
}

void Sale::openIfNeeded()
{
    constexpr int sale = 1;
    if (!document)
        open(sale);
}

void Sale::save()
{
    const auto error = parts.store.save(document);
    isSaved = !error;
    tellUnsaved(error);
    attach(document, parts.store.isOpenFileFree() ? parts.store.openFile() : QString());
    if (isSaved)
        fileUnfinished();
}

void Sale::tellUnsaved(const std::optional<QString> &error)
{
    if (error)
        parts.console.line(QStringLiteral("[not saved] %1").arg(*error));
}

void Sale::attach(const Receipt &receipt, const QString &file)
{
    auto *const session = Singleton<Session>::instance();
    session->setCurrentDocument(receipt);
    session->setDocumentFile(file);
    parts.system.setDocument(receipt);
}

void Sale::takeCardOff()
{
    parts.system.clearLoyaltyData();
    parts.system.clearData();
    if (document)
        document->setCardRecord({});
}

} // namespace till
