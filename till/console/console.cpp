#include "till/console/console.h"

#include "till/core/printable.h"

#include <algorithm>
#include <ostream>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace till {

Console::Console(int descriptor, std::ostream &output)
    : output(output)
{
    ended = !input.open(descriptor, QIODevice::ReadOnly);
    interactive = ::isatty(descriptor) == 1;
}

void Console::line(const QString &text)
{
    printLine(output, text);
}

ConsoleLine Console::ask(const QString &question)
{
    // In a script no typed answer ends the question's line.
    output << printable(question).toStdString() << (interactive ? " " : "\n") << std::flush;
    return read();
}

ConsoleLine Console::readCommand(const QString &prompt)
{
    return interactive ? ask(prompt) : read();
}

ConsoleLine Console::read()
{
    using Kind = ConsoleLine::Kind;
    auto bytes = readPart();
    ended = bytes.isEmpty();
    if (ended)
        return {};
    const auto isTooLong = bytes.size() > maximumLineLength && !bytes.endsWith('\n');
    while (isTooLong && !bytes.isEmpty() && !bytes.endsWith('\n'))
        bytes = readPart();
    if (isTooLong)
        return {Kind::Refused,
                ConsoleText::tr("The line is longer than %1 bytes.").arg(maximumLineLength)};
    for (const auto end : {'\n', '\r'}) {
        if (bytes.endsWith(end))
            bytes.chop(1);
    }
    const auto text = QString::fromUtf8(bytes);
    if (text.contains(QChar::ReplacementCharacter))
        return {Kind::Refused, ConsoleText::tr("The line is not UTF-8 text.")};
    if (printable(text) != text)
        return {Kind::Refused, ConsoleText::tr("The line holds control characters.")};
    if (echoes)
        line(u"> "_s + text);
    return {Kind::Text, text};
}

/// The next line with its end, or its first `maximumLineLength` bytes and one more.
QByteArray Console::readPart()
{
    QByteArray part(maximumLineLength + 2, '\0');
    const auto length = ended ? 0 : input.readLine(part.data(), part.size());
    return part.left(std::max<qint64>(length, 0));
}

} // namespace till
