#pragma once

#include <QString>
#include <QStringList>

#include <functional>

namespace till {

class Console;
class Sale;

/// The cashier's commands, one a line.
class SaleCommands
{
public:
    enum class Outcome {
        Understood,    ///< Also when the sale refused the step.
        NotUnderstood, ///< An unknown command or arguments that are none; nothing has changed.
        Quit,
    };

    /// `pluginDescription` answers the command "plugin". Both references must outlive this object.
    SaleCommands(Sale &sale, Console &console, QString pluginDescription);

    /// Runs commands until "quit" or the end of the input. A line that begins with "#" is a
    /// comment and is shown. \return Whether every line was understood and no receipt is lost.
    bool run();
    Outcome execute(const QString &line);

    /// The commands with an example each.
    static QString help();

private:
    struct Command
    {
        QString name;
        QString usage;
        QString help;
        qsizetype fewest; ///< Arguments.
        qsizetype most;
        std::function<bool(SaleCommands &, const QStringList &)> run;
    };

    static const QList<Command> &commands();
    bool refuse(const QString &expected);
    bool open(const QStringList &arguments);
    bool add(const QStringList &arguments);
    bool discount(const QStringList &arguments);
    bool action(const QStringList &arguments);
    bool showQueue();
    bool quit(const QStringList &arguments);

    Sale &sale;
    Console &console;
    QString pluginDescription;
    bool quits = false;
};

} // namespace till
