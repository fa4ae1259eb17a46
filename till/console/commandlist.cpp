#include "till/console/console.h"
#include "till/console/salecommands.h"
#include "till/core/numbers.h"
#include "till/core/sale.h"
#include "till/core/till.h"
#include "till/words/figures.h"
#include "till/words/receipttext.h"

#include <host/action.h>

#include <algorithm>
#include <array>
#include <limits>

using namespace Qt::StringLiterals;

namespace till {

namespace {

/// An argument that is a number.
struct Number
{
    const char *names; ///< In the usage of commands.
    double least;
    double most;
    int decimals;
    const char *expected; ///< "%1" is the most.
};

constexpr double largest = std::numeric_limits<int>::max();
constexpr std::array numbers{
    Number{"KIND", 1, 2, 0,
           QT_TRANSLATE_NOOP("till::SaleCommands", "1 for a sale or 2 for a return")},
    Number{
        "PRICE", 0, Sale::maximumPrice, 2,
        QT_TRANSLATE_NOOP("till::SaleCommands", "a price from 0 to %1 with at most two decimals")},
    Number{"QUANTITY", 0.001, Sale::maximumQuantity, 3,
           QT_TRANSLATE_NOOP("till::SaleCommands",
                             "a quantity from 0.001 to %1 with at most three decimals")},
    Number{"SUM", 0.01, Sale::maximumSum, 2,
           QT_TRANSLATE_NOOP("till::SaleCommands", "a sum above 0 with at most two decimals")},
    Number{"NUMBER POSITION", 1, largest, 0,
           QT_TRANSLATE_NOOP("till::SaleCommands", "a whole number above 0")},
    Number{"CAMPAIGN MODE SOURCE", 0, largest, 0,
           QT_TRANSLATE_NOOP("till::SaleCommands", "a whole number")},
};

} // namespace

QString SaleCommands::read(const Command &command, Arguments &arguments)
{
    auto usage = QString::fromLatin1(command.usage).split(u' ').mid(1);
    const auto most = usage.size();
    const auto least = most - usage.filter(u"["_s).size();
    if (arguments.texts.size() < least || arguments.texts.size() > most)
        return tr("Expected: %1").arg(tr(command.usage));
    for (const auto &text : std::as_const(arguments.texts)) {
        const auto name = usage.takeFirst().remove(u'[').remove(u']');
        const auto *const number = std::ranges::find_if(numbers, [&name](const Number &known) {
            return QString::fromLatin1(known.names).split(u' ').contains(name);
        });
        if (number == numbers.end()) {
            if (text.trimmed().isEmpty() || (name.isLower() && text != name))
                return tr("Expected: %1").arg(tr(command.usage));
            arguments.numbers.append(0);
            continue;
        }
        const auto value = parseDecimal(text, number->decimals, number->most);
        if (!value || *value < number->least)
            return tr("Expected %1.")
                .arg(tr(number->expected).replace("%1"_L1, quantityLabel(number->most)));
        arguments.numbers.append(*value);
    }
    return {};
}

QString SaleCommands::help()
{
    QStringList lines;
    for (const auto &command : commands)
        lines.append(u"  %1  %2"_s.arg(tr(command.usage), -46).arg(tr(command.help)));
    return lines.join(u'\n');
}

const QList<SaleCommands::Command> SaleCommands::commands{
    {QT_TR_NOOP("open [KIND]"), QT_TR_NOOP("opens a sale (1) or a return (2): open 2"),
     [](auto &self, const auto &with) { self.sale.open(with.whole(0, DocumentHeader::sale)); }},
    {QT_TR_NOOP("add CODE NAME PRICE [QUANTITY]"),
     QT_TR_NOOP("sells goods: add 4601 \"Fresh milk\" 89.90 2"),
     [](auto &self, const auto &with) {
         self.sale.add(with.texts.at(0), with.texts.at(1), with.numbers.at(2),
                       with.numbers.value(3, 1));
     }},
    {QT_TR_NOOP("quantity POSITION QUANTITY"), QT_TR_NOOP("changes a quantity: quantity 1 3"),
     [](auto &self, const auto &with) {
         self.sale.changeQuantity(with.whole(0), with.numbers.at(1));
     }},
    {QT_TR_NOOP("remove POSITION"), QT_TR_NOOP("removes a position: remove 2"),
     [](auto &self, const auto &with) { self.sale.remove(with.whole(0)); }},
    {QT_TR_NOOP("discount POSITION SUM CAMPAIGN [MODE [SOURCE]]"),
     QT_TR_NOOP("makes a position cheaper: discount 1 10.00 77"),
     [](auto &self, const auto &with) {
         self.sale.discount(with.whole(0), with.numbers.at(1), with.whole(2), with.whole(3),
                            with.whole(4));
     }},
    {QT_TR_NOOP("card PHONE"), QT_TR_NOOP("identifies the customer: card +7 916 123-45-67"),
     [](auto &self, const auto &with) { self.sale.enterCard(with.texts.at(0)); }},
    {"show", QT_TR_NOOP("shows the receipt"),
     [](auto &self, const auto &) { self.show(receiptText); }},
    {"holder", QT_TR_NOOP("shows the card and its holder"),
     [](auto &self, const auto &) { self.show(holderText); }},
    {QT_TR_NOOP("action NUMBER"), QT_TR_NOOP("triggers an action: action 170"),
     [](auto &self, const auto &with) { self.sale.trigger(with.whole(0)); }},
    {"edit", QT_TR_NOOP("edits the customer's data, as action 170 does"),
     [](auto &self, const auto &) { self.sale.trigger(control::Action::editCustomer); }},
    {"clear", QT_TR_NOOP("removes card and loyalty data from the receipt"),
     [](auto &self, const auto &) { self.sale.clearLoyaltyData(); }},
    {"commit", QT_TR_NOOP("closes the receipt"),
     [](auto &self, const auto &) { self.sale.commit(); }},
    {"cancel", QT_TR_NOOP("cancels the receipt"), [](auto &self, const auto &) { self.cancel(); }},
    {QT_TR_NOOP("report NUMBER"), QT_TR_NOOP("reports a committed receipt again: report 17"),
     [](auto &self, const auto &with) { self.sale.report(with.whole(0)); }},
    {"queue", QT_TR_NOOP("shows the state of the delivery"),
     [](auto &self, const auto &) { self.showDelivery(); }},
    {"shift", QT_TR_NOOP("closes the shift"), [](auto &self, const auto &) { self.closeShift(); }},
    {"plugin", QT_TR_NOOP("shows the loaded plugin"),
     [](auto &self, const auto &) { self.console.line(self.till.pluginDescription()); }},
    {"help", QT_TR_NOOP("shows this list"),
     [](auto &self, const auto &) { self.console.line(help()); }},
    {"quit [now]", QT_TR_NOOP("quits the till; an open receipt stays open"),
     [](auto &self, const auto &with) { self.quit(!with.texts.isEmpty()); }},
};

} // namespace till
