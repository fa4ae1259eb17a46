#include "till/console/salecommands.h"

#include "till/console/console.h"
#include "till/core/sale.h"
#include "till/core/till.h"
#include "till/core/toldtexts.h"
#include "till/words/figures.h"
#include "till/words/receipttext.h"
#include "till/words/saletext.h"

#include <host/dialog.h>

#include <QCoreApplication>
#include <QProcess>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace till {

SaleCommands::SaleCommands(Till &till, Console &console)
    : till(till)
    , sale(till.sale())
    , console(console)
{
    connect(&sale, &Sale::happened, this, [this](const SaleEvent &event) { tell(event); });
}

/// Tells the cashier about an event, and the integrator about the disk's error.
void SaleCommands::tell(const SaleEvent &event)
{
    const auto receipt = sale.receipt();
    if (event.kind == SaleEvent::Kind::NotStored)
        say(tr("[not saved] %1").arg(oneLine(event.text)));
    if (event.kind == SaleEvent::Kind::ReceiptUnreadable)
        say(tr("[not readable] row %1: %2").arg(event.number).arg(oneLine(event.text)));
    if (event.kind != SaleEvent::Kind::Identified)
        say(eventText(event, receipt));
    else if (receipt)
        say(holderText(*receipt));
}

bool SaleCommands::run()
{
    bool allUnderstood = true;
    for (;;) {
        // Delivers the signals that the delivery's thread has emitted.
        QCoreApplication::processEvents();
        const auto line = console.readCommand(u"till>"_s);
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
    Arguments arguments{QProcess::splitCommand(text), {}};
    const auto name = arguments.texts.isEmpty() ? QString() : arguments.texts.takeFirst();
    // A phone number keeps its blanks.
    if (name == "card"_L1 && !arguments.texts.isEmpty())
        arguments.texts = {arguments.texts.join(u' ')};
    const auto command = std::ranges::find_if(commands, [&name](const Command &known) {
        return QString::fromLatin1(known.usage).section(u' ', 0, 0) == name;
    });
    const auto problem = command == commands.end()
                             ? tr(R"(Unknown command "%1"; "help" lists the commands.)").arg(name)
                             : read(*command, arguments);
    if (!problem.isEmpty()) {
        say(problem);
        return Outcome::NotUnderstood;
    }
    command->run(*this, arguments);
    return quits ? Outcome::Quit : Outcome::Understood;
}

/// Tells the cashier something, and logs it.
void SaleCommands::say(const QString &text)
{
    logTold(text);
    console.line(text);
}

void SaleCommands::showDelivery()
{
    const auto state = till.store().deliveryState();
    console.line(
        state.error.isEmpty()
            ? tr("Messages waiting: %1, parked: %2; receipts refused: %3. Oldest: %4.")
                  .arg(state.waiting)
                  .arg(state.parked)
                  .arg(state.refused)
                  .arg(state.oldestWaiting.isValid() ? timeLabel(state.oldestWaiting) : u"-"_s)
            : oneLine(state.error));
}

void SaleCommands::show(QString (*text)(const ReceiptView &))
{
    const auto receipt = sale.receipt();
    console.line(receipt ? text(*receipt) : tr("No receipt is open."));
}

void SaleCommands::cancel()
{
    const auto receipt = sale.receipt();
    if (!receipt || confirm(tr("Cancel receipt %1, total %2?")
                                .arg(receipt->header.num)
                                .arg(moneyLabel(receipt->total))))
        sale.cancel();
}

void SaleCommands::closeShift()
{
    if (sale.receipt() || confirm(tr("Close shift %1?").arg(sale.shift())))
        sale.closeShift();
}

bool SaleCommands::mayReport(qsizetype count)
{
    return confirm(tr("Receipts to report again: %1. Report them?").arg(count));
}

/// Asks the cashier. \return Whether the answer is yes; no at the end of the input.
bool SaleCommands::confirm(const QString &question)
{
    return Dialog().showChoice({{}, question}, 0, {{}, tr("yes")}, {{}, tr("no")}, 0);
}

bool SaleCommands::mayEnd()
{
    QStringList numbers;
    for (const auto number : till.onlyInMemory())
        numbers.append(QString::number(number));
    if (!numbers.isEmpty())
        say(tr("Not saved: receipt %1.").arg(numbers.join(", "_L1)));
    return numbers.isEmpty();
}

void SaleCommands::quit(bool isForced)
{
    quits = mayEnd() || isForced;
    if (!quits)
        say(tr("The till keeps running. Make room on the disk and quit again; \"quit now\" quits "
               "without saving."));
}

} // namespace till
