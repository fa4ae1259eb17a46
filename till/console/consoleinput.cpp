#include "till/console/consoleinput.h"

#include "till/console/texts.h"

#include <QStringDecoder>

#include <algorithm>
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
    const auto isControl = [](QChar character) {
        return character.category() == QChar::Other_Control;
    };
    if (std::any_of(text.cbegin(), text.cend(), isControl))
        return {ConsoleLine::Kind::Refused, ConsoleText::tr("The line holds control characters.")};
    return {ConsoleLine::Kind::Text, std::move(text)};
}

} // namespace

ConsoleInput::ConsoleInput(int descriptor)
{
    ended = !file.open(descriptor, QIODevice::ReadOnly);
}

ConsoleLine ConsoleInput::readLine()
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
QByteArray ConsoleInput::readPart()
{
    QByteArray part(maximumLineLength + 2, '\0');
    const auto length = ended ? 0 : file.readLine(part.data(), part.size());
    return part.left(std::max<qint64>(length, 0));
}

bool ConsoleInput::isTerminal() const
{
    return ::isatty(file.handle()) == 1;
}

} // namespace till
