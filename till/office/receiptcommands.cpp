#include "till/office/commands.h"

#include "till/core/numbers.h"
#include "till/core/receiptview.h"
#include "till/core/sale.h"
#include "till/office/answer.h"
#include "till/office/texts.h"

#include <host/abstractdocument.h>
#include <host/documentjson.h>

#include <QJsonArray>
#include <QJsonObject>

#include <limits>

namespace till {

namespace {

QString stateText(ReceiptState state)
{
    switch (state) {
    case ReceiptState::Open:
        return Office::tr("open");
    case ReceiptState::Committing:
        return Office::tr("being committed");
    case ReceiptState::Committed:
        return Office::tr("committed");
    case ReceiptState::Cancelled:
        return Office::tr("cancelled");
    }
    return {};
}

QString reportText(Report report, bool isSale)
{
    switch (report) {
    case Report::None: // of a sale: taken over from a version that did not keep it
        return isSale ? Office::tr("not recorded") : Office::tr("nothing to report");
    case Report::Reported:
        return Office::tr("reported");
    case Report::Queued:
        return Office::tr("waiting in the queue");
    case Report::Refused:
        return Office::tr("refused");
    }
    return {};
}

/// How the receipt stands, and what was said of it.
QString outcomeText(ReceiptState state, const ReportRecord &report, int kind)
{
    if (state != ReceiptState::Committed)
        return stateText(state);
    const auto outcome = reportText(report.outcome, kind == DocumentHeader::sale);
    return report.told.isEmpty() ? outcome : QStringLiteral("%1: %2").arg(outcome, report.told);
}

QString lineOf(const ReceiptRecord &record)
{
    const auto &header = record.header;
    return QStringLiteral("%1  %2  %3  %4")
        .arg(QString::number(header.num),
             header.dateTimeBeg.toString(QStringLiteral("dd.MM.yyyy hh:mm:ss")),
             header.kind == DocumentHeader::sale ? Office::tr("sale") : Office::tr("return"),
             outcomeText(record.state, record.report, header.kind));
}

QJsonObject toJson(ReceiptState state, const ReportRecord &report)
{
    return {{QLatin1String("state"), nameOf(state)},
            {QLatin1String("report"), nameOf(report.outcome)},
            {QLatin1String("told"), report.told},
            {QLatin1String("answer"), report.answer}};
}

QJsonObject toJson(const ReceiptRecord &record)
{
    const auto &header = record.header;
    auto json = toJson(record.state, record.report);
    json.insert(QLatin1String("number"), header.num);
    json.insert(QLatin1String("shop"), header.shopCode);
    json.insert(QLatin1String("register"), header.cashCode);
    json.insert(QLatin1String("shift"), header.shift);
    json.insert(QLatin1String("kind"), header.kind);
    json.insert(QLatin1String("begun"), header.dateTimeBeg.toString(Qt::ISODate));
    json.insert(QLatin1String("changed"), record.changed.toString(Qt::ISODateWithMs));
    return json;
}

QJsonObject documentOf(const ReceiptRecord &record)
{
    return QJsonDocument::fromJson(record.document.toUtf8()).object();
}

int list(Store &store, std::ostream &output, const ReceiptFilter &filter, bool asJson)
{
    const auto records = store.list(filter);
    if (!records)
        return fail(output, store.lastError());
    if (asJson) {
        QJsonArray array;
        for (const auto &record : *records)
            array.append(toJson(record));
        printJson(output, array);
        return 0;
    }
    for (const auto &record : *records)
        printLine(output, lineOf(record));
    if (records->size() == filter.limit)
        printLine(output, Office::tr("The latest %1 only; --since chooses.").arg(filter.limit));
    return 0;
}

void showText(std::ostream &output, const ReceiptRecord &record, const QList<HistoryEntry> &history)
{
    const auto &header = record.header;
    printLine(output, lineOf(record));
    printLine(output, Office::tr("shop %1, register %2, shift %3")
                          .arg(header.shopCode)
                          .arg(header.cashCode)
                          .arg(header.shift));
    if (!record.report.answer.isEmpty())
        printLine(output, Office::tr("the service's answer: %1").arg(record.report.answer));
    for (const auto &entry : history)
        printLine(output,
                  QStringLiteral("%1  %2").arg(
                      entry.at.toLocalTime().toString(QStringLiteral("dd.MM.yyyy hh:mm:ss.zzz")),
                      outcomeText(entry.state, entry.report, header.kind)));
    QString error;
    const auto document = documentjson::fromJson(documentOf(record), error);
    if (!document) {
        printLine(output, Office::tr("The receipt cannot be read: %1").arg(error));
        return;
    }
    const auto view = viewOf(*document);
    for (const auto &position : view.positions)
        printLine(output, QStringLiteral("%1. %2  %3 x %4 = %5")
                              .arg(position.number)
                              .arg(position.name, quantityText(position.quantity),
                                   moneyText(position.price), moneyText(position.sum)));
    printLine(output, Office::tr("total %1").arg(moneyText(view.total)));
    if (view.customer)
        printLine(output, QStringLiteral("%1, %2").arg(view.customer->getName(),
                                                       view.customer->getPhoneNumber()));
}

QJsonObject showJson(const ReceiptRecord &record, const QList<HistoryEntry> &history)
{
    QJsonArray entries;
    for (const auto &entry : history) {
        auto json = toJson(entry.state, entry.report);
        json.insert(QLatin1String("at"), entry.at.toString(Qt::ISODateWithMs));
        entries.append(json);
    }
    auto json = toJson(record);
    json.insert(QLatin1String("history"), entries);
    json.insert(QLatin1String("document"), documentOf(record));
    return json;
}

int show(Store &store, std::ostream &output, int number, bool asJson)
{
    const auto records = store.find(number);
    if (!records)
        return fail(output, store.lastError());
    if (records->isEmpty())
        return fail(output, Office::tr("There is no receipt %1.").arg(number));
    QJsonArray array;
    for (const auto &record : *records) {
        const auto history = store.history(record.row);
        if (!history)
            return fail(output, store.lastError());
        if (asJson)
            array.append(showJson(record, *history));
        else
            showText(output, record, *history);
    }
    if (asJson)
        printJson(output, array);
    return 0;
}

} // namespace

int runReceiptsCommand(Store &store, std::ostream &output, const QStringList &arguments,
                       const ReceiptFilter &filter, bool asJson)
{
    if (arguments.isEmpty())
        return list(store, output, filter, asJson);
    const auto number = parseWhole(arguments.value(1), 1, std::numeric_limits<int>::max());
    if (arguments.size() == 2 && arguments.first() == QLatin1String("show") && number)
        return show(store, output, *number, asJson);
    printLine(output, Office::tr("Expected: till receipts [--refused] [--since DATE] [--json] or "
                                 "till receipts show NUMBER [--json]"));
    return 2;
}

} // namespace till
