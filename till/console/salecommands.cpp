#include "till/console/salecommands.h"

#include "till/console/console.h"
#include "till/core/numbers.h"
#include "till/office/queuecommands.h"
#include "till/core/sale.h"

#include <host/dbqueuebroker.h>

#include <QProcess>

#include <limits>

namespace till {

namespace {

constexpr int customerEditAction = 170;
constexpr double maximumPrice = 9'999'999.99;
constexpr double maximumQuantity = 99'999.999;
constexpr int largest = std::numeric_limits<int>::max();

} // namespace

SaleCommands::SaleCommands(Sale &sale, Console &console, QString pluginDescription)
    : sale(sale)
    , console(console)
    , pluginDescription(std::move(pluginDescription))
{}

bool SaleCommands::run()
{
    bool allUnderstood = true;
    for (;;) {
        const auto line = console.readCommand(QStringLiteral("till>"));
        if (line.kind == ConsoleLine::Kind::End)
            return sale.mayEnd() && allUnderstood;
        if (line.kind == ConsoleLine::Kind::Refused) {
            console.line(line.text);
            allUnderstood = false;
            continue;
        }
        const auto outcome = execute(line.text);
        if (outcome == Outcome::Quit)
            return allUnderstood;
        allUnderstood = allUnderstood && outcome == Outcome::Understood;
    }
}

SaleCommands::Outcome SaleCommands::execute(const QString &line)
{
    const auto text = line.trimmed();
    if (text.startsWith(u'#'))
        console.line(text);
    if (text.isEmpty() || text.startsWith(u'#'))
        return Outcome::Understood;
    auto words = QProcess::splitCommand(text);
    const auto name = words.isEmpty() ? QString() : words.takeFirst();
    // A number is taken as it was typed, blanks and quotes included.
    if (name == QLatin1String("card") && text.startsWith(name) && !words.isEmpty())
        words = QStringList(text.mid(name.size()).trimmed());
    for (const auto &command : commands()) {
        if (command.name != name)
            continue;
        if (words.size() < command.fewest || words.size() > command.most) {
            console.line(QStringLiteral("Expected: %1").arg(command.usage));
            return Outcome::NotUnderstood;
        }
        const auto understood = command.run(*this, words);
        if (quits)
            return Outcome::Quit;
        return understood ? Outcome::Understood : Outcome::NotUnderstood;
    }
    console.line(QStringLiteral("Unknown command \"%1\"; \"help\" lists the commands.").arg(name));
    return Outcome::NotUnderstood;
}

QString SaleCommands::help()
{
    QStringList lines;
    for (const auto &command : commands())
        lines.append(QStringLiteral("  %1 %2").arg(command.usage, -50).arg(command.help));
    return lines.join(u'\n');
}

const QList<SaleCommands::Command> &SaleCommands::commands()
{
    /// A command without arguments that is always understood.
    const auto simple = [](const char *name, const char *help, auto step) {
        const auto text = QString::fromUtf8(name);
        return Command{text,
                       text,
                       QString::fromUtf8(help),
                       0,
                       0,
                       [step](SaleCommands &self, const QStringList &) {
                           step(self);
                           return true;
                       }};
    };
    static const QList<Command> list = {
        {QStringLiteral("open"), QStringLiteral("open [KIND]"),
         QStringLiteral("opens a sale (1) or a return (2): open 2"), 0, 1, &SaleCommands::open},
        {QStringLiteral("add"), QStringLiteral("add CODE NAME PRICE [QUANTITY]"),
         QStringLiteral("sells goods: add 4601 \"Fresh milk\" 89.90 2"), 3, 4, &SaleCommands::add},
        {QStringLiteral("discount"),
         QStringLiteral("discount POSITION SUM CAMPAIGN [MODE [SOURCE]]"),
         QStringLiteral("makes a position cheaper: discount 1 10.00 77"), 3, 5,
         &SaleCommands::discount},
        simple("show", "shows the receipt", [](auto &self) { self.sale.show(); }),
        {QStringLiteral("card"), QStringLiteral("card NUMBER"),
         QStringLiteral("identifies the customer: card +7 916 123-45-67"), 1, 1,
         [](SaleCommands &self, const QStringList &arguments) {
             self.sale.enterCard(arguments.constFirst());
             return true;
         }},
        simple("holder", "shows the card and its holder",
               [](auto &self) { self.sale.showHolder(); }),
        {QStringLiteral("action"), QStringLiteral("action CODE"),
         QStringLiteral("triggers an action: action 170"), 1, 1, &SaleCommands::action},
        simple("edit", "edits the customer's data, as action 170 does",
               [](auto &self) { self.sale.trigger(customerEditAction); }),
        simple("clear", "takes card and loyalty data off the receipt",
               [](auto &self) { self.sale.clearLoyaltyData(); }),
        simple("commit", "closes the receipt", [](auto &self) { self.sale.commit(); }),
        simple("cancel", "abandons the receipt", [](auto &self) { self.sale.cancel(); }),
        simple("queue", "shows how delivery stands", [](auto &self) { self.showQueue(); }),
        simple("shift", "closes the shift", [](auto &self) { self.sale.closeShift(); }),
        simple("plugin", "shows what is loaded",
               [](auto &self) { self.console.line(self.pluginDescription); }),
        simple("help", "shows this list", [](auto &self) { self.console.line(help()); }),
        {QStringLiteral("quit"), QStringLiteral("quit [now]"),
         QStringLiteral("ends the till; an open receipt stays open"), 0, 1, &SaleCommands::quit},
    };
    return list;
}

bool SaleCommands::refuse(const QString &expected)
{
    console.line(QStringLiteral("Expected %1.").arg(expected));
    return false;
}

bool SaleCommands::open(const QStringList &arguments)
{
    constexpr int sold = 1;
    constexpr int returned = 2;
    const auto kind = parseWhole(arguments.value(0, QString::number(sold)), sold, returned);
    if (!kind)
        return refuse(QStringLiteral("1 for a sale or 2 for a return"));
    sale.open(*kind);
    return true;
}

bool SaleCommands::add(const QStringList &arguments)
{
    if (arguments.at(0).trimmed().isEmpty() || arguments.at(1).trimmed().isEmpty())
        return refuse(QStringLiteral("a code and a name"));
    const auto price = parseDecimal(arguments.at(2), 2, maximumPrice);
    if (!price)
        return refuse(QStringLiteral("a price from 0 to %1 with at most two decimals")
                          .arg(moneyText(maximumPrice)));
    const auto quantity = parseDecimal(arguments.value(3, QStringLiteral("1")), 3, maximumQuantity);
    if (!quantity || *quantity == 0)
        return refuse(QStringLiteral("a quantity from 0.001 to %1 with at most three decimals")
                          .arg(quantityText(maximumQuantity)));
    sale.add(arguments.at(0), arguments.at(1), *price, *quantity);
    return true;
}

bool SaleCommands::discount(const QStringList &arguments)
{
    const auto sum = parseDecimal(arguments.at(1), 2, Sale::maximumSum);
    if (!sum || *sum == 0)
        return refuse(QStringLiteral("a sum above 0 with at most two decimals"));
    QList<int> numbers;
    for (const auto index : {0, 2, 3, 4}) {
        const auto text = arguments.value(index, QStringLiteral("0"));
        const auto number = parseWhole(text, 0, largest);
        if (!number)
            return refuse(QStringLiteral("a whole number, not \"%1\"").arg(text));
        numbers.append(*number);
    }
    sale.discount(numbers.at(0), *sum, numbers.at(1), numbers.at(2), numbers.at(3));
    return true;
}

bool SaleCommands::action(const QStringList &arguments)
{
    const auto code = parseWhole(arguments.constFirst(), 1, largest);
    if (!code)
        return refuse(QStringLiteral("an action's code"));
    sale.trigger(*code);
    return true;
}

bool SaleCommands::showQueue()
{
    console.line(queueStateText(*Singleton<DBQueueBroker>::instance()));
    return true;
}

bool SaleCommands::quit(const QStringList &arguments)
{
    const auto isForced = arguments == QStringList(QStringLiteral("now"));
    if (!isForced && !arguments.isEmpty())
        return refuse(QStringLiteral("\"quit\" or \"quit now\""));
    quits = isForced || sale.mayEnd();
    if (!quits)
        console.line(
            QStringLiteral("The till goes on. Make room on the disk and quit again; \"quit now\" "
                           "ends it all the same."));
    return true;
}

} // namespace till
