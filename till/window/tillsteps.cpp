// The cashier's steps around the receipts: the shift, refused orders, the goods file, the end.
#include "till/core/sale.h"
#include "till/core/settingtable.h"
#include "till/core/till.h"
#include "till/window/mainwindow.h"
#include "till/window/reports.h"

using namespace Qt::StringLiterals;

namespace till {

void MainWindow::closeShift()
{
    till.take(tr("Adding up the shift"), [this](Till &till) {
        const auto shift = till.sale().shift();
        const auto lines = shiftReport(till.store(), settings.place, shift);
        QMetaObject::invokeMethod(this, [this, shift, lines] {
            warn(tr("Close shift %1?").arg(shift), lines.join(u'\n'), tr("Close"),
                 [this] { sell(tr("Closing the shift"), [](Sale &sale) { sale.closeShift(); }); });
        });
    });
}

/// Shows the refused orders; the cashier may send them again.
void MainWindow::showRefused()
{
    till.take(tr("Reading the refused orders"), [this](Till &till) {
        QMetaObject::invokeMethod(this, [this, orders = refusedOrders(till.store())] {
            QStringList lines{tr("These sales are done, but the service refused their orders. When "
                                 "support has mended the reason, send the orders again.")};
            for (const auto &order : orders)
                lines.append(order.second);
            auto *const dialog = new MessageDialog(
                *this, MessageDialog::Kind::Plain,
                {tr("Refused orders"), lines.join("\n\n"_L1), tr("Back"), tr("Send again")}, 600);
            connect(dialog, &QDialog::accepted, this, [this, orders] {
                sell(tr("Sending the orders again"), [orders](Sale &sale) {
                    for (const auto &order : orders)
                        sale.report(order.first);
                });
            });
            dialog->appear();
        });
    });
}

void MainWindow::showBadGoods()
{
    constexpr qsizetype most = 100;
    auto lines = goods.problems.first(std::min(most, goods.problems.size()));
    lines.prepend(tr("These lines of %1 cannot be sold by their code:")
                      .arg(settingText("Till:goodsFile"_L1)));
    (new MessageDialog(*this, MessageDialog::Kind::Error, {tr("Goods file"), lines.join(u'\n')}))
        ->appear();
}

void MainWindow::leave()
{
    if (isLeaving)
        return;
    isLeaving = true;
    refresh();
    tell(tr("The till is being closed ..."));
    presenter.setRefusing(true);
    till.end(tr("Closing the till"), false);
}

void MainWindow::stay(const QList<int> &receipts)
{
    isLeaving = false;
    presenter.setRefusing(false);
    QStringList numbers;
    for (const auto number : receipts)
        numbers.append(QString::number(number));
    warn(tr("Leave and lose receipts?"),
         tr("Not saved: %n receipt(s), %1. They will be lost if you leave now. Make room on the "
            "disk first.",
            nullptr, static_cast<int>(numbers.size()))
             .arg(numbers.join(", "_L1)),
         tr("Leave and lose them"), [this] {
             presenter.setRefusing(true);
             till.end(tr("Closing the till"), true);
         });
    refresh();
}

} // namespace till
