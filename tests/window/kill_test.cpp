#include "cashier.h"

#include <QCoreApplication>

#include <csignal>

using namespace Qt::StringLiterals;

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
    environment.insert(u"KILL_AT"_s, QString::number(GetParam()));
    environment.insert(u"TILL_DIRECTORY"_s, directory);
    environment.insert(u"SERVICE_PORT"_s, QString::number(service.portNumber()));
    victim.setProcessEnvironment(environment);
    victim.start(QCoreApplication::applicationFilePath(),
                 {u"--gtest_also_run_disabled_tests"_s, u"--gtest_filter=Victim.*"_s});
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
