#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

#include <iosfwd>

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

/// The cashier's console: texts go out, lines of UTF-8 text come in from a terminal, a pipe or a
/// file.
///
/// A line that is too long, is not UTF-8 or holds control characters is read to its end and
/// refused. A last line without an end counts as a line.
class Console
{
public:
    static constexpr qsizetype maximumLineLength = qsizetype(64) * 1024; ///< Bytes.

    /// The descriptor stays the caller's; the output must outlive the console.
    Console(int descriptor, std::ostream &output);

    /// Shows a text as a line of its own, or several, without control characters.
    void line(const QString &text);
    /// Shows a question and waits for the line typed. On a terminal the answer stands behind it.
    ConsoleLine ask(const QString &question);
    /// Waits for a line. The prompt is shown on a terminal only.
    ConsoleLine readCommand(const QString &prompt);
    /// Has every line that is read shown behind "> ", so that a script's output reads like a
    /// session. Off at first.
    void setEcho(bool on) { echoes = on; }

private:
    void write(const QString &text);
    ConsoleLine read();
    ConsoleLine readLine();
    QByteArray readPart();

    QFile input;
    std::ostream &output;
    bool ended = false; ///< The input.
    bool interactive = false;
    bool echoes = false;
};

} // namespace till
