#include "till/console/console.h"

#include "till/console/texts.h"
#include "till/core/printable.h"

#include <QStringDecoder>

#include <algorithm>
#include <ostream>
#include <unistd.h>

namespace till {

namespace {

ConsoleLine decode(QByteArrayView bytes)
{
    for (const auto end : {'\n', '\r'}) {
        if (bytes.endsWith(end))
            bytes.chop(1);
    }
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder(bytes);
    if (decoder.hasError())
        return {ConsoleLine::Kind::Refused, ConsoleText::tr("The line is not UTF-8 text.")};
    if (printable(text) != text)
        return {ConsoleLine::Kind::Refused, ConsoleText::tr("The line holds control characters.")};
    return {ConsoleLine::Kind::Text, std::move(text)};
}

} // namespace

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

void Console::write(const QString &text)
{
    output << printable(text).toStdString();
}

ConsoleLine Console::read()
{
    auto typed = readLine();
    if (echoes && typed.kind == ConsoleLine::Kind::Text)
        line(QStringLiteral("> %1").arg(typed.text));
    return typed;
}

ConsoleLine Console::readLine()
{
    auto line = readPart();
    ended = line.isEmpty();
    if (ended)
        return {};
    const auto isTooLong = line.size() > maximumLineLength && !line.endsWith('\n');
    while (isTooLong && !line.isEmpty() && !line.endsWith('\n'))
        line = readPart();
    if (isTooLong)
        return {ConsoleLine::Kind::Refused,
                ConsoleText::tr("The line is longer than %1 bytes.").arg(maximumLineLength)};
    return decode(line);
}

/// The next line with its end, or as much of it as is no longer than a line may be.
QByteArray Console::readPart()
{
    QByteArray part(maximumLineLength + 2, '\0');
    const auto length = ended ? 0 : input.readLine(part.data(), part.size());
    return part.left(std::max<qint64>(length, 0));
}

} // namespace till
