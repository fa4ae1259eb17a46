#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

namespace till {

/// One line of the input.
struct ConsoleLine
{
    enum class Kind {
        Text,
        Refused, ///< Not acceptable; `text` says why. The next line can be read.
        End,     ///< There are no more lines, now and ever.
    };

    Kind kind = Kind::End;
    QString text; ///< Without the line's end.
};

/// Lines of UTF-8 text from a file descriptor: a terminal, a pipe or a file.
///
/// A line that is too long, is not UTF-8 or holds control characters is read to its end and
/// refused. A last line without an end counts as a line.
class ConsoleInput
{
public:
    static constexpr qsizetype maximumLineLength = qsizetype(64) * 1024; ///< Bytes.

    /// The descriptor stays the caller's.
    explicit ConsoleInput(int descriptor);

    /// Waits for the next line.
    ConsoleLine readLine();
    bool isTerminal() const;

private:
    QByteArray readPart();

    QFile file;
    bool ended = false;
};

} // namespace till
