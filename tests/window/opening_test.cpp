#include "cashier.h"

#include "till/core/till.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace {

TEST_F(WindowTest, BringsTheSellingWindowToTheFrontInsteadOfOpeningAnother)
{
    openWindow();
    const auto selling = std::move(window);
    selling->showMinimized();
    openWindow();
    EXPECT_TRUE(QTest::qWaitFor([&] { return selling->isActiveWindow(); }));
    EXPECT_FALSE(selling->isMinimized());
    EXPECT_EQ(till::MessageDialog::onTop(*window), nullptr);
}

TEST_F(WindowTest, SaysWhyItCannotOpen)
{
    QDir().mkdir(fileName("data"));
    till::ProcessLock terminal(till::Till::lockFile(fileName("data")));
    ASSERT_TRUE(terminal.acquire());
    openWindow();
    await("messageDialog");
    expectText("message", "Эта касса уже торгует");
    EXPECT_FALSE(isShown("details"));
    click("more");
    expectText("details", "till.log");
    int exitCode = -1;
    QObject::connect(window.get(), &till::MainWindow::ended, [&](int code) { exitCode = code; });
    press(Qt::Key_Return);
    EXPECT_EQ(exitCode, 2);
}

TEST_F(WindowTest, EndsWithoutAScreen)
{
    QProcess program;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
    environment.insert(u"DISPLAY"_s, u":there-is-none"_s);
    program.setProcessEnvironment(environment);
    program.start(QStringLiteral(TILL_WINDOW), QStringList());
    ASSERT_TRUE(program.waitForFinished());
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.exitCode(), 2);
    EXPECT_TRUE(program.readAllStandardError().contains("no screen"));
}

TEST_F(WindowTest, TakesThePluginThatItsOptionNames)
{
    QProcess program;
    program.start(QStringLiteral(TILL_WINDOW), {u"--config"_s, fileName("till.conf"), u"--plugin"_s,
                                                u"/nowhere.so"_s, u"--log"_s, u"-"_s});
    ASSERT_TRUE(program.waitForStarted());
    const auto says = [&] { return program.readAllStandardError().contains("/nowhere.so"); };
    EXPECT_TRUE(QTest::qWaitFor(says, 10'000));
    program.kill();
    program.waitForFinished();
}

} // namespace
