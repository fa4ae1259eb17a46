#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QFile>
#include <QString>

#include <iosfwd>

namespace till {

/// The translation context of the console.
struct ConsoleText
{
    Q_DECLARE_TR_FUNCTIONS(ConsoleText)
};

/// One line of the input.
struct ConsoleLine
{
    enum class Kind {
        Text,
        Refused, ///< A bad line; `text` says why. The next line can be read.
        End,     ///< The input has ended.
    };

    Kind kind = Kind::End;
    QString text; ///< Without the line end.
};

/// The cashier's console: writes texts and reads lines of UTF-8 from a terminal, a pipe or a file.
///
/// Refuses a line that is too long, is not UTF-8 or holds control characters, and goes on after its
/// end. A last line without a line end counts as a line.
class Console
{
public:
    static constexpr qsizetype maximumLineLength = qsizetype(64) * 1024; ///< Bytes.

    /// The caller closes the descriptor. The output must outlive the console.
    Console(int descriptor, std::ostream &output);

    /// Writes a text of one line or several, without control characters.
    void line(const QString &text);
    /// Shows a question and waits for a line. On a terminal the answer is typed after the question.
    ConsoleLine ask(const QString &question);
    /// Waits for a line. Shows the prompt only on a terminal.
    ConsoleLine readCommand(const QString &prompt);
    /// Shows every line after it is read, behind "> ", so that a script's output reads like a
    /// session. Off by default.
    void setEcho(bool on) { echoes = on; }

private:
    ConsoleLine read();
    QByteArray readPart();

    QFile input;
    std::ostream &output;
    bool ended = false; ///< Whether the input has ended.
    bool interactive = false;
    bool echoes = false;
};

} // namespace till
