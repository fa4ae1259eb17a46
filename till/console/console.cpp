#include "till/console/console.h"

#include <algorithm>
#include <ostream>

namespace till {

Console::Console(ConsoleInput &input, std::ostream &output)
    : input(input)
    , output(output)
    , interactive(input.isTerminal())
{}

void Console::line(const QString &text)
{
    write(text);
    output << '\n' << std::flush;
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
    auto shown = text;
    const auto isUnsafe = [](QChar character) {
        return character.category() == QChar::Other_Control && character != u'\n';
    };
    std::replace_if(shown.begin(), shown.end(), isUnsafe, QChar(u'?'));
    output << shown.toStdString();
}

} // namespace till
