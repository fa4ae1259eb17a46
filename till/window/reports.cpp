#include "till/window/reports.h"

#include "till/window/mainwindow.h"
#include "till/words/figures.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace till {

namespace {

using namespace Qt::StringLiterals;

/// The service's messages in its answer to the order; empty for none.
QStringList wordsOf(const QString &answer)
{
    const auto json = QJsonDocument::fromJson(answer.toUtf8()).object();
    QStringList words{json.value("errorMessage"_L1).toString()};
    for (const auto &message : json.value("validationMessages"_L1).toArray())
        words.append(message.toObject().value("message"_L1).toString());
    words.removeAll(QString());
    return words;
}

} // namespace

QList<std::pair<int, QString>> refusedOrders(Store &store)
{
    constexpr int most = 20;
    QList<std::pair<int, QString>> orders;
    const auto records = store.list({Report::Refused, {}, most}).value_or(QList<ReceiptRecord>());
    for (const auto &record : records) {
        const auto &header = record.header;
        QStringList facts{MainWindow::tr("Receipt %1").arg(header.num),
                          timeLabel(header.dateTimeBeg)};
        if (const auto document = store.read(record.row).document) {
            const auto view = viewOf(*document);
            facts.append(moneyLabel(view.total));
            if (!view.cardNumber.isEmpty())
                facts.append(phoneLabel(view.cardNumber));
        }
        const auto reasons = QStringList(record.report.told) + wordsOf(record.report.answer);
        orders.append({header.num, facts.join(", "_L1) + ": "_L1 + reasons.join(u' ')});
    }
    return orders;
}

QStringList shiftReport(Store &store, const TillPlace &place, int shift)
{
    struct Sum
    {
        int count = 0;
        double sum = 0;
    };
    Sum sales;
    Sum returns;
    constexpr int most = 10'000;
    const auto records = store.list({{}, {}, most}).value_or(QList<ReceiptRecord>());
    for (const auto &record : records) {
        const auto &header = record.header;
        const auto isOfShift = header.shift == shift && header.shopCode == place.shopCode &&
                               header.cashCode == place.cashCode;
        const auto document = isOfShift && record.state == ReceiptState::Committed
                                  ? store.read(record.row).document
                                  : nullptr;
        if (!document)
            continue;
        auto &kind = header.kind == DocumentHeader::sale ? sales : returns;
        ++kind.count;
        kind.sum += document->getTotal();
    }
    const auto delivery = store.deliveryState();
    return {MainWindow::tr("Receipts: %1, %2").arg(sales.count).arg(moneyLabel(sales.sum)),
            MainWindow::tr("Returns: %1, %2").arg(returns.count).arg(moneyLabel(returns.sum)),
            MainWindow::tr("Messages waiting: %1").arg(delivery.waiting),
            MainWindow::tr("Orders refused: %1").arg(delivery.refused)};
}

} // namespace till
