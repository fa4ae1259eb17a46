#include "cashier.h"

namespace {

TEST_F(WindowTest, SaysWhyItCannotOpen)
{
    openWindow();
    const auto first = std::move(window);
    openWindow();
    await("messageDialog");
    expectText("message", "уже открыта в другом окне");
    int exitCode = -1;
    QObject::connect(window.get(), &till::MainWindow::ended, [&](int code) { exitCode = code; });
    press(Qt::Key_Return);
    EXPECT_EQ(exitCode, 2);

    QProcess program;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    environment.insert(QStringLiteral("DISPLAY"), QStringLiteral(":there-is-none"));
    program.setProcessEnvironment(environment);
    program.start(QStringLiteral(TILL_WINDOW), QStringList());
    ASSERT_TRUE(program.waitForFinished());
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.exitCode(), 2);
    EXPECT_TRUE(program.readAllStandardError().contains("no screen"));
}

} // namespace
