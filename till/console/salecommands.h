#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>

namespace till {

class Console;
class Sale;
class Till;
struct ReceiptView;

/// The cashier's commands, one a line.
class SaleCommands : public QObject
{
    Q_OBJECT
public:
    enum class Outcome {
        Understood,    ///< Also when the sale refused the step.
        NotUnderstood, ///< An unknown command or arguments that are none; nothing has changed.
        Quit,
    };

    /// Shows what was found at the start, and from now on what happens in the sale. Both must
    /// outlive this object.
    SaleCommands(Till &till, Console &console);

    /// Runs commands until "quit" or the end of the input. A line that begins with "#" is a
    /// comment and is shown. \return Whether every line was understood and no receipt is lost.
    bool run();
    Outcome execute(const QString &line);

    /// The commands with an example each.
    static QString help();

private:
    struct Command
    {
        const char *usage; ///< Its name and its arguments; those in brackets may be missing.
        const char *help;
        std::function<bool(SaleCommands &, const QStringList &)> run;
    };

    static const QList<Command> &commands();
    static QList<Command> positionCommands();
    static QList<Command> receiptCommands();
    void say(const QString &text);
    bool refuse(const QString &expected);
    bool open(const QStringList &arguments);
    bool add(const QStringList &arguments);
    bool changeQuantity(const QStringList &arguments);
    bool discount(const QStringList &arguments);
    bool withQuantity(const QString &text, const std::function<bool(double)> &step);
    bool withNumber(const QStringList &arguments, const std::function<void(int)> &step);
    void show(QString (*text)(const ReceiptView &));
    void cancel();
    void closeShift();
    bool confirm(const QString &question);
    bool mayEnd();
    bool quit(const QStringList &arguments);

    Till &till;
    Sale &sale;
    Console &console;
    bool quits = false;
};

} // namespace till
