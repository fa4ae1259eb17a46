#include "cashier.h"

#include <QCoreApplication>

#include <csignal>

namespace {

/// A till killed at one of the dialogs; runs as a program of its own.
class Victim : public WindowTest
{
protected:
    /// Ends the program without warning when this is the chosen dialog.
    void dialog(const char *name)
    {
        await(name);
        if (--dialogsLeft == 0)
            std::raise(SIGKILL);
    }
    int dialogsLeft = qEnvironmentVariableIntValue("KILL_AT");
};

TEST_F(Victim, DISABLED_Sells)
{
    openWindow();
    enter("4600");
    press(Qt::Key_F2);
    dialog("formDialog");
    type("9031234567", Qt::Key_Return);
    dialog("messageDialog");
    press(Qt::Key_Return);
    dialog("formDialog");
    type("Анна", Qt::Key_Return);
    dialog("formDialog");
}

class Kill : public WindowTest, public testing::WithParamInterface<int>
{};

TEST_P(Kill, AtADialogLosesNothingOfTheReceipt)
{
    QProcess victim;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("KILL_AT"), QString::number(GetParam()));
    environment.insert(QStringLiteral("TILL_DIRECTORY"), directory);
    environment.insert(QStringLiteral("SERVICE_PORT"), QString::number(service.portNumber()));
    victim.setProcessEnvironment(environment);
    victim.start(QCoreApplication::applicationFilePath(),
                 {QStringLiteral("--gtest_also_run_disabled_tests"),
                  QStringLiteral("--gtest_filter=Victim.*")});
    ASSERT_TRUE(victim.waitForFinished());
    ASSERT_EQ(victim.exitStatus(), QProcess::CrashExit) << victim.readAll().constData();
    openWindow();
    expectText("message", "Чек 1 снова открыт");
    expectText("total", "89,90");
    expectText("customer", "Клиента нет");
    press(Qt::Key_F12);
    expectText("message", "Чек 1 закрыт: 89,90");
}

INSTANTIATE_TEST_SUITE_P(EveryDialog, Kill, testing::Values(1, 2, 3, 4));

} // namespace
