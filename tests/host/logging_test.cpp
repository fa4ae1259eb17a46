#include "support.h"

#include <host/logging.h>

#include <log4qt/logmanager.h>

#include <QLoggingCategory>

using LogFile = WithFiles;

TEST_F(LogFile, HoldsOneLineAMessageWhateverItsText)
{
    const auto file = path(QStringLiteral("new/deep/till.log"));
    ASSERT_EQ(logging::start(file, false), std::nullopt);
    Log4Qt::LogManager::logger(QStringLiteral("lmmindbox"), QString())
        ->info(QStringLiteral("имя: %1, %2"),
               QStringLiteral("a\r\nwarning lmmindbox: forged\u2028%2"), 7);
    logging::stop();
    ASSERT_EQ(logging::start(file, false), std::nullopt);
    qWarning("second\x1b");
    logging::stop();

    const auto lines = read(file).split('\n');
    ASSERT_EQ(lines.size(), 3);
    EXPECT_TRUE(lines[0].endsWith(
        QByteArray("lmmindbox: имя: a\\r\\nwarning lmmindbox: forged\\u2028%2, 7")))
        << lines[0].toStdString();
    EXPECT_TRUE(lines[1].endsWith("second\\u001b"));
    EXPECT_EQ(mode(file), 0600U);
    EXPECT_EQ(mode(path(QStringLiteral("new"))), 0700U);
}

TEST_F(LogFile, ThatCannotBeWrittenIsNamed)
{
    const auto file = write(QStringLiteral("file"), "") + QStringLiteral("/till.log");
    EXPECT_TRUE(
        logging::start(file, false).value_or(QString()).contains(path(QStringLiteral("file"))));
}
