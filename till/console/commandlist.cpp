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

/// A step without arguments.
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
        lines.append(QStringLiteral("  %1  %2").arg(tr(command.usage), -46).arg(tr(command.help)));
    return lines.join(u'\n');
}

const QList<SaleCommands::Command> &SaleCommands::commands()
{
    static const auto all = positionCommands() + receiptCommands();
    return all;
}

QList<SaleCommands::Command> SaleCommands::positionCommands()
{
    const auto remove = [](auto &self, const QStringList &arguments) {
        return self.withNumber(arguments, [&](int position) { self.sale.remove(position); });
    };
    const auto card = [](auto &self, const QStringList &arguments) {
        self.sale.enterCard(arguments.constFirst());
        return true;
    };
    return {
        {QT_TR_NOOP("open [KIND]"), QT_TR_NOOP("opens a sale (1) or a return (2): open 2"),
         &SaleCommands::open},
        {QT_TR_NOOP("add CODE NAME PRICE [QUANTITY]"),
         QT_TR_NOOP("sells goods: add 4601 \"Fresh milk\" 89.90 2"), &SaleCommands::add},
        {QT_TR_NOOP("quantity POSITION QUANTITY"), QT_TR_NOOP("changes a quantity: quantity 1 3"),
         &SaleCommands::changeQuantity},
        {QT_TR_NOOP("remove POSITION"), QT_TR_NOOP("takes a position off: remove 2"), remove},
        {QT_TR_NOOP("discount POSITION SUM CAMPAIGN [MODE [SOURCE]]"),
         QT_TR_NOOP("makes a position cheaper: discount 1 10.00 77"), &SaleCommands::discount},
        {QT_TR_NOOP("card NUMBER"), QT_TR_NOOP("identifies the customer: card +7 916 123-45-67"),
         card},
    };
}

QList<SaleCommands::Command> SaleCommands::receiptCommands()
{
    const auto action = [](auto &self, const QStringList &arguments) {
        return self.withNumber(arguments, [&](int code) { self.sale.trigger(code); });
    };
    const auto report = [](auto &self, const QStringList &arguments) {
        return self.withNumber(arguments, [&](int number) { self.sale.report(number); });
    };
    return {
        {"show", QT_TR_NOOP("shows the receipt"),
         simple([](auto &self) { self.show(receiptText); })},
        {"holder", QT_TR_NOOP("shows the card and its holder"),
         simple([](auto &self) { self.show(holderText); })},
        {QT_TR_NOOP("action CODE"), QT_TR_NOOP("triggers an action: action 170"), action},
        {"edit", QT_TR_NOOP("edits the customer's data, as action 170 does"),
         simple([](auto &self) { self.sale.trigger(control::Action::editCustomer); })},
        {"clear", QT_TR_NOOP("takes card and loyalty data off the receipt"),
         simple([](auto &self) { self.sale.clearLoyaltyData(); })},
        {"commit", QT_TR_NOOP("closes the receipt"),
         simple([](auto &self) { self.sale.commit(); })},
        {"cancel", QT_TR_NOOP("abandons the receipt"), simple([](auto &self) { self.cancel(); })},
        {QT_TR_NOOP("report NUMBER"),
         QT_TR_NOOP("reports a committed receipt once more: report 17"), report},
        {"queue", QT_TR_NOOP("shows how delivery stands"),
         simple([](auto &self) { self.console.line(deliveryText(self.till.deliveryState())); })},
        {"shift", QT_TR_NOOP("closes the shift"), simple([](auto &self) { self.closeShift(); })},
        {"plugin", QT_TR_NOOP("shows what is loaded"),
         simple([](auto &self) { self.console.line(self.till.pluginDescription()); })},
        {"help", QT_TR_NOOP("shows this list"),
         simple([](auto &self) { self.console.line(help()); })},
        {QT_TR_NOOP("quit [now]"), QT_TR_NOOP("ends the till; an open receipt stays open"),
         &SaleCommands::quit},
    };
}

} // namespace till
