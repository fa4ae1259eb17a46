#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

namespace till {

class Console;
class Sale;
class Till;
struct ReceiptView;
struct SaleEvent;

/// The cashier's commands, one a line.
class SaleCommands : public QObject
{
    Q_OBJECT
public:
    enum class Outcome {
        Understood,    ///< Even when the sale refused the step.
        NotUnderstood, ///< An unknown command or bad arguments; nothing has changed.
        Quit,
    };

    /// Shows the sale's events from now on. The till, already started, and the console must outlive
    /// this object.
    SaleCommands(Till &till, Console &console);

    /// Runs commands until "quit" or the end of the input. Shows a line that begins with "#" as a
    /// comment. \return Whether every line was understood and no receipt is lost.
    bool run();
    Outcome execute(const QString &line);

    /// The list of commands, with examples.
    static QString help();
    /// Asks whether to report so many receipts again.
    static bool mayReport(qsizetype count);

private:
    /// What was typed after a command's name. A text's number is 0.
    struct Arguments
    {
        QStringList texts;
        QList<double> numbers;

        int whole(qsizetype index, int otherwise = 0) const
        {
            return static_cast<int>(numbers.value(index, otherwise));
        }
    };
    struct Command
    {
        /// Its name and arguments. Those in brackets are optional; one in small letters is typed as
        /// it stands.
        const char *usage;
        const char *help;
        void (*run)(SaleCommands &, const Arguments &);
    };

    static const QList<Command> commands;
    /// Reads the arguments' numbers. \return What was expected; empty when it was typed.
    static QString read(const Command &command, Arguments &arguments);
    void tell(const SaleEvent &event);
    void say(const QString &text);
    void showDelivery();
    void show(QString (*text)(const ReceiptView &));
    void cancel();
    void closeShift();
    static bool confirm(const QString &question);
    bool mayEnd();
    void quit(bool isForced);

    Till &till;
    Sale &sale;
    Console &console;
    bool quits = false;
};

} // namespace till
