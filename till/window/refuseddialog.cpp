#include "till/window/refuseddialog.h"

#include "till/window/named.h"
#include "till/window/texts.h"

#include <QHeaderView>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace till {

namespace {

/// What the service said of the order, in its own words; empty when it gave none.
QStringList wordsOf(const QString &answer)
{
    const auto json = QJsonDocument::fromJson(answer.toUtf8()).object();
    QStringList words{json.value(QLatin1String("errorMessage")).toString()};
    const auto messages = json.value(QLatin1String("validationMessages")).toArray();
    for (const auto &message : messages)
        words.append(message.toObject().value(QLatin1String("message")).toString());
    words.removeAll(QString());
    return words;
}

} // namespace

RefusedDialog::RefusedDialog(QWidget &window, const QList<ReceiptRecord> &receipts)
    : DialogFrame(window, tr("Refused orders"))
    , list(named(new QTreeWidget(this), QStringLiteral("refusedList"), windowTitle()))
{
    setObjectName(QStringLiteral("refusedDialog"));
    setMinimumSize(820, 460);
    addText(
        QStringLiteral("message"),
        tr("The service did not take these. When the reason is mended, report the order again."));
    list->setRootIsDecorated(false);
    list->setWordWrap(true);
    list->setHeaderLabels({tr("Receipt"), tr("Sold"), tr("Reason")});
    for (const auto &receipt : receipts) {
        const auto &header = receipt.header;
        const auto reasons = QStringList(receipt.report.told) + wordsOf(receipt.report.answer);
        auto *const item =
            new QTreeWidgetItem(list, {QString::number(header.num), timeLabel(header.dateTimeBeg),
                                       reasons.join(u'\n')});
        item->setData(0, Qt::UserRole, header.num);
    }
    list->setColumnWidth(0, 90);
    list->setColumnWidth(1, 150);
    content().addWidget(list, 1);
    addButtons(tr("Report again"), tr("Back"));
    connect(list, &QTreeWidget::itemSelectionChanged, this,
            [this] { okButton()->setEnabled(chosen() > 0); });
    list->setCurrentItem(list->topLevelItem(0));
    okButton()->setEnabled(chosen() > 0);
    focusFirst(list);
}

int RefusedDialog::chosen() const
{
    const auto *const item = list->currentItem();
    return item ? item->data(0, Qt::UserRole).toInt() : 0;
}

} // namespace till
