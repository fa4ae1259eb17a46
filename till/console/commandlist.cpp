#include "till/console/console.h"
#include "till/console/eventtext.h"
#include "till/console/receipttext.h"
#include "till/console/salecommands.h"
#include "till/core/sale.h"
#include "till/core/till.h"

#include <host/action.h>

#include <utility>

namespace till {

namespace {

/// A step without arguments, always understood.
template<typename Step>
auto simple(Step step)
{
    return [step](auto &self, const QStringList &) {
        step(self);
        return true;
    };
}

} // namespace

QString SaleCommands::help()
{
    QStringList lines;
    for (const auto &command : commands())
        lines.append(QStringLiteral("  %1  %2").arg(command.usage, -46).arg(command.help));
    return lines.join(u'\n');
}

QList<SaleCommands::Command> SaleCommands::commands()
{
    return positionCommands() + receiptCommands();
}

QList<SaleCommands::Command> SaleCommands::positionCommands()
{
    const auto remove = [](SaleCommands &self, const QStringList &arguments) {
        return self.withNumber(arguments, [&](int position) { self.sale.remove(position); });
    };
    const auto card = [](SaleCommands &self, const QStringList &arguments) {
        self.sale.enterCard(arguments.constFirst());
        return true;
    };
    return {
        {QStringLiteral("open"), tr("open [KIND]"), tr("opens a sale (1) or a return (2): open 2"),
         0, 1, &SaleCommands::open},
        {QStringLiteral("add"), tr("add CODE NAME PRICE [QUANTITY]"),
         tr("sells goods: add 4601 \"Fresh milk\" 89.90 2"), 3, 4, &SaleCommands::add},
        {QStringLiteral("quantity"), tr("quantity POSITION QUANTITY"),
         tr("changes a quantity: quantity 1 3"), 2, 2, &SaleCommands::changeQuantity},
        {QStringLiteral("remove"), tr("remove POSITION"), tr("takes a position off: remove 2"), 1,
         1, remove},
        {QStringLiteral("discount"), tr("discount POSITION SUM CAMPAIGN [MODE [SOURCE]]"),
         tr("makes a position cheaper: discount 1 10.00 77"), 3, 5, &SaleCommands::discount},
        {QStringLiteral("card"), tr("card NUMBER"),
         tr("identifies the customer: card +7 916 123-45-67"), 1, 1, card},
    };
}

QList<SaleCommands::Command> SaleCommands::receiptCommands()
{
    const auto action = [](SaleCommands &self, const QStringList &arguments) {
        return self.withNumber(arguments, [&](int code) { self.sale.trigger(code); });
    };
    const auto report = [](SaleCommands &self, const QStringList &arguments) {
        return self.withNumber(arguments, [&](int number) { self.sale.report(number); });
    };
    const auto command = [](const char *name, const QString &help, auto step) {
        const auto text = QLatin1String(name);
        return Command{text, text, help, 0, 0, simple(step)};
    };
    return {
        command("show", tr("shows the receipt"), [](auto &self) { self.show(receiptText); }),
        command("holder", tr("shows the card and its holder"),
                [](auto &self) { self.show(holderText); }),
        {QStringLiteral("action"), tr("action CODE"), tr("triggers an action: action 170"), 1, 1,
         action},
        command("edit", tr("edits the customer's data, as action 170 does"),
                [](auto &self) { self.sale.trigger(control::Action::editCustomer); }),
        command("clear", tr("takes card and loyalty data off the receipt"),
                [](auto &self) { self.sale.clearLoyaltyData(); }),
        command("commit", tr("closes the receipt"), [](auto &self) { self.sale.commit(); }),
        command("cancel", tr("abandons the receipt"), [](auto &self) { self.cancel(); }),
        {QStringLiteral("report"), tr("report NUMBER"),
         tr("reports a committed receipt once more: report 17"), 1, 1, report},
        command("queue", tr("shows how delivery stands"),
                [](auto &self) { self.console.line(deliveryText(self.till.deliveryState())); }),
        command("shift", tr("closes the shift"), [](auto &self) { self.closeShift(); }),
        command("plugin", tr("shows what is loaded"),
                [](auto &self) { self.console.line(self.till.pluginDescription()); }),
        command("help", tr("shows this list"), [](auto &self) { self.console.line(help()); }),
        {QStringLiteral("quit"), tr("quit [now]"), tr("ends the till; an open receipt stays open"),
         0, 1, &SaleCommands::quit},
    };
}

} // namespace till
