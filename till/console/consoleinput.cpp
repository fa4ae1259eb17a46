#include "till/console/consoleinput.h"

#include "till/console/texts.h"

#include <QStringDecoder>

#include <algorithm>
#include <array>
#include <cerrno>
#include <unistd.h>

namespace till {

namespace {

ConsoleLine decode(QByteArrayView bytes)
{
    if (bytes.endsWith('\r'))
        bytes.chop(1);
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
    : descriptor(descriptor)
{}

ConsoleLine ConsoleInput::readLine()
{
    bool tooLong = false;
    qsizetype searched = 0;
    for (;;) {
        const auto end = buffer.indexOf('\n', searched);
        const auto length = end < 0 ? buffer.size() : end;
        tooLong = tooLong || length > maximumLineLength;
        if (end >= 0 || (ended && length > 0)) {
            const auto line = buffer.left(length);
            buffer.remove(0, length + 1);
            return tooLong ? ConsoleLine{ConsoleLine::Kind::Refused,
                                         ConsoleText::tr("The line is longer than %1 bytes.")
                                             .arg(maximumLineLength)}
                           : decode(line);
        }
        if (ended)
            return {};
        // Of a line that is too long only the last byte is kept, to know that there was one.
        if (tooLong)
            buffer = buffer.right(1);
        searched = buffer.size();
        ended = !fill();
    }
}

bool ConsoleInput::isTerminal() const
{
    return ::isatty(descriptor) == 1;
}

bool ConsoleInput::fill()
{
    std::array<char, 4096> chunk = {};
    ssize_t count = 0;
    do {
        count = ::read(descriptor, chunk.data(), chunk.size());
    } while (count < 0 && errno == EINTR);
    if (count > 0)
        buffer.append(chunk.data(), count);
    return count > 0;
}

} // namespace till
