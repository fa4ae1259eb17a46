#include "till/console/salecommands.h"

#include "till/console/console.h"
#include "till/console/consolepresenter.h"
#include "till/console/eventtext.h"
#include "till/core/numbers.h"
#include "till/core/sale.h"
#include "till/core/till.h"

#include <host/abstractdocument.h>

#include <QProcess>

#include <limits>

namespace till {

namespace {

constexpr int largest = std::numeric_limits<int>::max();

} // namespace

SaleCommands::SaleCommands(Till &till, Console &console)
    : till(till)
    , sale(till.sale())
    , console(console)
{
    connect(&sale, &Sale::happened, this,
            [this](const SaleEvent &event) { say(eventText(event, sale.receipt())); });
    if (!till.note().isEmpty())
        say(till.note());
}

bool SaleCommands::run()
{
    bool allUnderstood = true;
    for (;;) {
        const auto line = console.readCommand(QStringLiteral("till>"));
        if (line.kind == ConsoleLine::Kind::End)
            return mayEnd() && allUnderstood;
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
        const auto usage = QString::fromLatin1(command.usage).split(u' ');
        if (usage.constFirst() != name)
            continue;
        const auto most = usage.size() - 1;
        if (words.size() < most - usage.filter(QStringLiteral("[")).size() || words.size() > most) {
            say(tr("Expected: %1").arg(tr(command.usage)));
            return Outcome::NotUnderstood;
        }
        const auto understood = command.run(*this, words);
        if (quits)
            return Outcome::Quit;
        return understood ? Outcome::Understood : Outcome::NotUnderstood;
    }
    say(tr(R"(Unknown command "%1"; "help" lists the commands.)").arg(name));
    return Outcome::NotUnderstood;
}

/// Tells the cashier something that the log keeps.
void SaleCommands::say(const QString &text)
{
    ToldTexts::note(text);
    console.line(text);
}

bool SaleCommands::refuse(const QString &expected)
{
    say(tr("Expected %1.").arg(expected));
    return false;
}

bool SaleCommands::open(const QStringList &arguments)
{
    const auto kind = parseWhole(arguments.value(0, QString::number(DocumentHeader::sale)),
                                 DocumentHeader::sale, DocumentHeader::returned);
    if (!kind)
        return refuse(tr("1 for a sale or 2 for a return"));
    sale.open(*kind);
    return true;
}

bool SaleCommands::add(const QStringList &arguments)
{
    if (arguments.at(0).trimmed().isEmpty() || arguments.at(1).trimmed().isEmpty())
        return refuse(tr("a code and a name"));
    const auto price = parseDecimal(arguments.at(2), 2, Sale::maximumPrice);
    if (!price)
        return refuse(tr("a price from 0 to %1 with at most two decimals")
                          .arg(moneyText(Sale::maximumPrice)));
    return withQuantity(arguments.value(3, QStringLiteral("1")), [&](double quantity) {
        sale.add(arguments.at(0), arguments.at(1), *price, quantity);
        return true;
    });
}

bool SaleCommands::changeQuantity(const QStringList &arguments)
{
    return withQuantity(arguments.at(1), [&](double quantity) {
        return withNumber(arguments,
                          [&](int position) { sale.changeQuantity(position, quantity); });
    });
}

bool SaleCommands::discount(const QStringList &arguments)
{
    const auto sum = parseDecimal(arguments.at(1), 2, Sale::maximumSum);
    if (!sum || *sum == 0)
        return refuse(tr("a sum above 0 with at most two decimals"));
    QList<int> numbers;
    for (const auto index : {0, 2, 3, 4}) {
        const auto text = arguments.value(index, QStringLiteral("0"));
        const auto number = parseWhole(text, 0, largest);
        if (!number)
            return refuse(tr("a whole number, not \"%1\"").arg(text));
        numbers.append(*number);
    }
    sale.discount(numbers.at(0), *sum, numbers.at(1), numbers.at(2), numbers.at(3));
    return true;
}

bool SaleCommands::withQuantity(const QString &text, const std::function<bool(double)> &step)
{
    const auto quantity = parseDecimal(text, 3, Sale::maximumQuantity);
    if (!quantity || *quantity == 0)
        return refuse(tr("a quantity from 0.001 to %1 with at most three decimals")
                          .arg(quantityText(Sale::maximumQuantity)));
    return step(*quantity);
}

/// Takes the step with the number that is the first argument.
bool SaleCommands::withNumber(const QStringList &arguments, const std::function<void(int)> &step)
{
    const auto number = parseWhole(arguments.constFirst(), 1, largest);
    if (!number)
        return refuse(tr("a whole number, not \"%1\"").arg(arguments.constFirst()));
    step(*number);
    return true;
}

void SaleCommands::show(QString (*text)(const ReceiptView &))
{
    const auto receipt = sale.receipt();
    console.line(receipt ? text(*receipt) : tr("No receipt is open."));
}

void SaleCommands::cancel()
{
    const auto receipt = sale.receipt();
    if (!receipt || confirm(tr("Abandon receipt %1, total %2?")
                                .arg(receipt->header.num)
                                .arg(moneyText(receipt->total))))
        sale.cancel();
}

void SaleCommands::closeShift()
{
    if (sale.receipt() || confirm(tr("Close shift %1?").arg(sale.shift())))
        sale.closeShift();
}

/// Whether the cashier says yes. The end of the input says no.
bool SaleCommands::confirm(const QString &question)
{
    ToldTexts::note(question);
    return ConsolePresenter(console).showChoice({{}, question}, {{}, tr("yes")}, {{}, tr("no")});
}

bool SaleCommands::mayEnd()
{
    QStringList numbers;
    for (const auto number : till.onlyInMemory())
        numbers.append(QString::number(number));
    if (numbers.isEmpty())
        return true;
    say(tr("Only in memory: receipt %1.").arg(numbers.join(QLatin1String(", "))));
    return false;
}

bool SaleCommands::quit(const QStringList &arguments)
{
    const auto isForced = arguments == QStringList(QStringLiteral("now"));
    if (!isForced && !arguments.isEmpty())
        return refuse(tr(R"("quit" or "quit now")"));
    quits = mayEnd() || isForced;
    if (!quits)
        say(tr("The till goes on. Make room on the disk and quit again; \"quit now\" ends it all "
               "the same."));
    return true;
}

} // namespace till
