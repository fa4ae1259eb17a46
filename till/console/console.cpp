#include "till/console/console.h"

#include "till/core/printable.h"

#include <ostream>

namespace till {

Console::Console(ConsoleInput &input, std::ostream &output)
    : input(input)
    , output(output)
    , interactive(input.isTerminal())
{}

void Console::line(const QString &text)
{
    printLine(output, text);
}

ConsoleLine Console::ask(const QString &question)
{
    write(question);
    // In a script nobody ends the line by typing the answer.
    output << (interactive ? " " : "\n") << std::flush;
    return read();
}

ConsoleLine Console::readCommand(const QString &prompt)
{
    if (interactive) {
        write(prompt);
        output << ' ' << std::flush;
    }
    return read();
}

ConsoleLine Console::read()
{
    auto typed = input.readLine();
    if (echoes && typed.kind == ConsoleLine::Kind::Text)
        line(QStringLiteral("> %1").arg(typed.text));
    return typed;
}

void Console::write(const QString &text)
{
    output << printable(text).toStdString();
}

} // namespace till
