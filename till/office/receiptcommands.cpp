#include "till/office/commands.h"

#include "till/core/numbers.h"
#include "till/core/receiptview.h"
#include "till/office/answer.h"
#include "till/words/receipttext.h"

#include <host/documentjson.h>

#include <QJsonArray>
#include <QJsonObject>

#include <array>
#include <limits>

using namespace Qt::StringLiterals;

namespace till {

namespace {

/// The receipt's state, and the cashier's text about its report.
QString outcomeText(ReceiptState state, const ReportRecord &report)
{
    constexpr std::array states{
        QT_TRANSLATE_NOOP("Office", "open"), QT_TRANSLATE_NOOP("Office", "being committed"),
        QT_TRANSLATE_NOOP("Office", "committed"), QT_TRANSLATE_NOOP("Office", "cancelled")};
    constexpr std::array reports{QT_TRANSLATE_NOOP("Office", "nothing to report"),
                                 QT_TRANSLATE_NOOP("Office", "reported"),
                                 QT_TRANSLATE_NOOP("Office", "waiting in the queue"),
                                 QT_TRANSLATE_NOOP("Office", "refused")};
    if (state != ReceiptState::Committed)
        return Office::tr(states.at(static_cast<size_t>(state)));
    const auto outcome = Office::tr(reports.at(static_cast<size_t>(report.outcome)));
    return report.told.isEmpty() ? outcome : u"%1: %2"_s.arg(outcome, report.told);
}

QString lineOf(const ReceiptRecord &record)
{
    const auto &header = record.header;
    return u"%1  %2  %3  %4"_s.arg(
        QString::number(header.num), header.dateTimeBeg.toString(u"dd.MM.yyyy hh:mm:ss"_s),
        header.kind == DocumentHeader::sale ? Office::tr("sale") : Office::tr("return"),
        outcomeText(record.state, record.report));
}

QJsonObject toJson(ReceiptState state, const ReportRecord &report)
{
    return {{"state"_L1, nameOf(state)},
            {"report"_L1, nameOf(report.outcome)},
            {"told"_L1, report.told},
            {"answer"_L1, report.answer}};
}

QJsonObject toJson(const ReceiptRecord &record)
{
    const auto &header = record.header;
    auto json = toJson(record.state, record.report);
    json.insert("number"_L1, header.num);
    json.insert("shop"_L1, header.shopCode);
    json.insert("register"_L1, header.cashCode);
    json.insert("shift"_L1, header.shift);
    json.insert("kind"_L1, header.kind);
    json.insert("begun"_L1, header.dateTimeBeg.toString(Qt::ISODate));
    json.insert("changed"_L1, record.changed.toString(Qt::ISODateWithMs));
    return json;
}

void showText(std::ostream &output, const ReceiptRecord &record, const QList<HistoryEntry> &history,
              const StoredReceipt &receipt)
{
    if (!record.report.answer.isEmpty())
        printLine(output, Office::tr("the service's answer: %1").arg(record.report.answer));
    for (const auto &entry : history)
        printLine(output,
                  u"%1  %2"_s.arg(entry.at.toLocalTime().toString(u"dd.MM.yyyy hh:mm:ss.zzz"_s),
                                  outcomeText(entry.state, entry.report)));
    printLine(output, receipt.document
                          ? receiptText(viewOf(*receipt.document))
                          : Office::tr("The receipt cannot be read: %1").arg(receipt.error));
}

QJsonObject showJson(QJsonObject json, const QList<HistoryEntry> &history,
                     const StoredReceipt &receipt)
{
    QJsonArray entries;
    for (const auto &entry : history) {
        auto entryJson = toJson(entry.state, entry.report);
        entryJson.insert("at"_L1, entry.at.toString(Qt::ISODateWithMs));
        entries.append(entryJson);
    }
    json.insert("history"_L1, entries);
    json.insert("document"_L1,
                receipt.document ? documentjson::toJson(*receipt.document) : QJsonObject());
    return json;
}

/// Prints the receipts, `inFull` with their history and content.
int print(Store &store, std::ostream &output, const Store::Result<QList<ReceiptRecord>> &records,
          bool inFull, bool asJson)
{
    if (!records)
        return fail(output, records.error());
    QJsonArray array;
    for (const auto &record : *records) {
        if (!asJson)
            printLine(output, lineOf(record));
        const auto history = inFull ? store.history(record.row) : QList<HistoryEntry>();
        if (!history)
            return fail(output, history.error());
        const auto receipt = inFull ? store.read(record.row) : StoredReceipt();
        if (asJson)
            array.append(inFull ? showJson(toJson(record), *history, receipt) : toJson(record));
        else if (inFull)
            showText(output, record, *history, receipt);
    }
    if (asJson)
        printJson(output, array);
    return 0;
}

} // namespace

int runReceiptsCommand(Store &store, std::ostream &output, const QStringList &arguments,
                       const ReceiptFilter &filter, bool asJson)
{
    const auto number = parseWhole(arguments.value(1), 1, std::numeric_limits<int>::max());
    if (arguments.size() == 2 && arguments.first() == "show"_L1 && number) {
        const auto records = store.list({.number = *number});
        if (records && records->isEmpty())
            return fail(output, Office::tr("There is no receipt %1.").arg(*number));
        return print(store, output, records, true, asJson);
    }
    if (!arguments.isEmpty()) {
        printLine(output, Office::tr("Expected: till receipts [--refused] [--since DATE] [--json] "
                                     "or till receipts show NUMBER [--json]"));
        return 2;
    }
    const auto records = store.list(filter);
    const auto exitCode = print(store, output, records, false, asJson);
    if (!asJson && records && records->size() == filter.limit)
        printLine(output, Office::tr("Only the latest %1 are listed; --since narrows the list.")
                              .arg(filter.limit));
    return exitCode;
}

} // namespace till
