#include "support.h"

#include <host/config.h>
#include <host/logging.h>

#include <log4qt/logmanager.h>

class LogFile : public WithFiles
{
protected:
    ~LogFile() override { logging::stop(); }

    void start() const { ASSERT_TRUE(logging::start(file, false)); }

    const QString file = path(u"new/deep/till.log"_s);
};

TEST_F(LogFile, HoldsOneLineAMessageWhateverItsText)
{
    start();
    Log4Qt::LogManager::logger(u"lmmindbox"_s, QString())
        ->info(u"имя: %1, %2"_s, u"a\r\nwarning lmmindbox: forged\u2028%2"_s, 7);
    start();
    qWarning("second\x1b");

    const auto lines = read(file).split('\n');
    ASSERT_EQ(lines.size(), 3);
    EXPECT_TRUE(lines[0].endsWith(
        QByteArray("lmmindbox: имя: a\\r\\nwarning lmmindbox: forged\\u2028%2, 7")))
        << lines[0].toStdString();
    EXPECT_TRUE(lines[1].endsWith("second\\u001b"));
    EXPECT_EQ(mode(file), 0600U);
    EXPECT_EQ(mode(path(u"new"_s)), 0700U);
}

TEST_F(LogFile, NeverHoldsTheKeyAsItIsNorAsJsonOrUrlsEncodeIt)
{
    auto *const config = Singleton<Config>::instance();
    const auto write = [&](const QString &key, const QString &text) {
        config->set(u"LmMindbox:secretKey"_s, key);
        qWarning("%ls", qUtf16Printable(text));
        const auto line = read(file);
        return line.mid(line.lastIndexOf(": ", -2) + 2);
    };
    start();
    const auto key = u"s3/ \"ü\\\\+"_s;
    for (const auto &form : {uR"(s3/ "ü\\+)"_s, uR"(S3/ \"ü\\\\+)"_s,
                             u"s3%2F%20%22%C3%BC%5C%5C%2B"_s, u"s3%2f%20%22%c3%bc%5c%5c%2b"_s})
        EXPECT_EQ(write(key, u"a "_s + form + u" b"_s), "a *** b\n") << qPrintable(form);
    EXPECT_EQ(write(key, u"s3 / \"ü"_s), QByteArray("s3 / \"ü\n"));
    EXPECT_EQ(write(u"abc"_s, u"abc"_s), "abc\n") << "too short";
    const auto longKey = u"k\""_s.repeated(2'500);
    EXPECT_EQ(write(longKey, u"a "_s + longKey), "a ***\n");
    config->clear();
}

TEST_F(LogFile, GoesOnAtItsBeginningWhenARotationHasTruncatedIt)
{
    start();
    qWarning("before");
    ASSERT_TRUE(QFile::resize(file, 0));
    qWarning("after");
    EXPECT_TRUE(read(file).endsWith(": after\n"));
    EXPECT_EQ(read(file).count('\0'), 0);
}

TEST_F(LogFile, ThatCannotBeWrittenIsNamed)
{
    const auto log = logging::start(write(u"file"_s, "") + u"/till.log"_s, false);
    ASSERT_FALSE(log);
    EXPECT_TRUE(log.error().contains(path(u"file"_s)));
}
