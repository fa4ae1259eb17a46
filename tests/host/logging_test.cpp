#include "support.h"

#include <host/config.h>
#include <host/logging.h>

#include <log4qt/logmanager.h>

#include <QElapsedTimer>
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

TEST_F(LogFile, NeverHoldsTheKeyHoweverItIsEncoded)
{
    const auto file = path(QStringLiteral("till.log"));
    auto *const config = Singleton<Config>::instance();
    const auto write = [&](const QString &key, const QString &text) {
        config->set(QStringLiteral("LmMindbox:secretKey"), key);
        qWarning("%ls", qUtf16Printable(text));
        const auto line = read(file);
        return line.mid(line.lastIndexOf(": ", -2) + 2);
    };
    ASSERT_EQ(logging::start(file, false), std::nullopt);
    const auto key = QStringLiteral("s3/ \"ü\\\\+");
    for (const auto *form : {
             R"(s3/ "ü\\+)",
             R"(S3/ \"ü\\\\+)",
             R"(s3\/ \u0022\u00FC\u005c\u005C\u002b)",
             R"(s3\\\/ \\\"ü\\\\\\\\+)",
             "s3%2f%20%22%C3%BC%5c%5C%2B",
             "s3/%20%22%c3%bc%5C%5C+",
         }) {
        const auto text = QStringLiteral("a %1 b").arg(QString::fromUtf8(form));
        EXPECT_EQ(write(key, text), "a *** b\n") << form;
        EXPECT_EQ(write(key, QChar(0xD800) + text), "?a *** b\n") << form;
    }
    EXPECT_EQ(write(key, QStringLiteral("s3 / \"ü")), QByteArray("s3 / \"ü\n"));
    EXPECT_EQ(write(QStringLiteral("abc"), QStringLiteral("abc")), "abc\n") << "too short";

    const auto hostile = QString(1 << 20, QLatin1Char('\\'));
    QElapsedTimer timer;
    timer.start();
    write(QStringLiteral("\\u\\a\\\\b"), hostile);
    EXPECT_LT(timer.elapsed(), 10'000);
    config->clear();
    logging::stop();
}

TEST_F(LogFile, GoesOnUnderItsNameAfterARotation)
{
    const auto file = path(QStringLiteral("till.log"));
    ASSERT_EQ(logging::start(file, false), std::nullopt);
    qWarning("before");
    ASSERT_TRUE(QFile::rename(file, path(QStringLiteral("till.log.1"))));
    ASSERT_EQ(logging::reopen(), std::nullopt);
    qWarning("after");
    logging::stop();
    EXPECT_TRUE(read(path(QStringLiteral("till.log.1"))).endsWith(": before\n"));
    EXPECT_TRUE(read(file).endsWith(": after\n"));
    EXPECT_EQ(mode(file), 0600U);
}

TEST_F(LogFile, ThatCannotBeWrittenIsNamed)
{
    const auto file = write(QStringLiteral("file"), "") + QStringLiteral("/till.log");
    EXPECT_TRUE(
        logging::start(file, false).value_or(QString()).contains(path(QStringLiteral("file"))));
}
