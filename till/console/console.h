#pragma once

#include "till/console/consoleinput.h"

#include <QString>

#include <iosfwd>

namespace till {

/// The cashier's console: texts go out, lines come in.
class Console
{
public:
    /// Both must outlive the console.
    Console(ConsoleInput &input, std::ostream &output);

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
    ConsoleLine read();
    void write(const QString &text);

    ConsoleInput &input;
    std::ostream &output;
    bool interactive;
    bool echoes = false;
};

} // namespace till
