#include "support.h"

#include <host/config.h>
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

TEST_F(LogFile, GoesOnUnderItsNameAfterARotationAndNeverHoldsTheKey)
{
    const auto file = path(QStringLiteral("till.log"));
    auto *const config = Singleton<Config>::instance();
    config->set(QStringLiteral("LmMindbox:secretKey"), QStringLiteral("s3 \"ü\\"));
    ASSERT_EQ(logging::start(file, false), std::nullopt);
    qWarning("%s", R"(a s3 "ü\ b s3 \"ü\\ c s3 \"\u00FC\\ d s3%20%22%C3%BC%5c e)");
    ASSERT_TRUE(QFile::rename(file, path(QStringLiteral("till.log.1"))));
    ASSERT_EQ(logging::reopen(), std::nullopt);
    config->set(QStringLiteral("LmMindbox:secretKey"), QStringLiteral("abc")); // too short
    qWarning("abc");
    config->clear();
    logging::stop();
    EXPECT_TRUE(read(path(QStringLiteral("till.log.1"))).endsWith(": a *** b *** c *** d *** e\n"));
    EXPECT_TRUE(read(file).endsWith(": abc\n"));
    EXPECT_EQ(mode(file), 0600U);
}

TEST_F(LogFile, ThatCannotBeWrittenIsNamed)
{
    const auto file = write(QStringLiteral("file"), "") + QStringLiteral("/till.log");
    EXPECT_TRUE(
        logging::start(file, false).value_or(QString()).contains(path(QStringLiteral("file"))));
}
