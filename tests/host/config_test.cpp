#include "support.h"

#include <host/config.h>

#include <vector>

using ConfigFile = WithFiles;

TEST_F(ConfigFile, ReturnsValuesCharacterForCharacter)
{
    Config config;
    const auto file =
        write(QStringLiteral("till.conf"), "# comment\n\n"
                                           "LmMindbox:secretKey=a=b, \"c\"; \\d#%1\n"
                                           "mask=%(position.code[s]) \u043a\u043e\u0434\n"
                                           "empty=\n"
                                           "number=-42\n"
                                           "wide=2147483648\n"
                                           "last=without a line feed");
    ASSERT_EQ(config.load(file), std::nullopt);

    EXPECT_EQ(config.getText(QStringLiteral("LmMindbox:secretKey")),
              QStringLiteral("a=b, \"c\"; \\d#%1"));
    EXPECT_EQ(config.getText(QStringLiteral("mask")), QStringLiteral("%(position.code[s]) код"));
    EXPECT_EQ(config.getText(QStringLiteral("empty"), QStringLiteral("default")), QString());
    EXPECT_EQ(config.getText(QStringLiteral("last")), QStringLiteral("without a line feed"));
    EXPECT_EQ(config.getInt(QStringLiteral("number"), 5), -42);

    const LogCapture log;
    EXPECT_EQ(config.getInt(QStringLiteral("missing"), 5), 5);
    EXPECT_TRUE(LogCapture::text().isEmpty());
    EXPECT_EQ(config.getInt(QStringLiteral("wide"), 5), 5);
    EXPECT_TRUE(LogCapture::has(QStringLiteral("\"wide\"")));
    EXPECT_FALSE(LogCapture::has(QStringLiteral("2147483648")));
}

TEST_F(ConfigFile, RefusesADamagedFileWithItsLineAndKeepsWhatItHad)
{
    struct Case
    {
        QByteArray content;
        QString expected;
    };
    const std::vector<Case> cases{
        {"a=1\nhunter2\n", QStringLiteral(":2: expected key=value")},
        {"=hunter2\n", QStringLiteral(":1: expected key=value")},
        {"k =hunter2\n", QStringLiteral(":1: expected no blank around the key")},
        {"k= hunter2\n", QStringLiteral(":1: expected no blank at the ends of the value of \"k\"")},
        {"k=hunter2\t\n", QStringLiteral(":1: expected no blank at the ends")},
        {"k=hunter2\r\n", QStringLiteral(":1: expected the line to end with a line feed alone")},
        {"k=hunter2\xff\n", QStringLiteral(":1: expected UTF-8")},
        {QByteArray("k=hunter2\0\n", 11), QStringLiteral(":1: expected text, found a null")},
        {"\xEF\xBB\xBFk=hunter2\n", QStringLiteral(":1: expected no byte order mark")},
        {"%2=1\n#\n%2=hunter2\n", QStringLiteral(":3: expected each key once, \"%2\" already "
                                                 "stands in line 1")},
        {QByteArray(2 << 20, 'x'), QStringLiteral("expected at most 1048576 bytes")},
    };
    Config config;
    config.set(QStringLiteral("before"), QStringLiteral("kept"));
    for (const auto &[content, expected] : cases) {
        SCOPED_TRACE(expected.toStdString());
        const auto file = write(QStringLiteral("bad%2%3.conf"), content);
        const auto error = config.load(file).value_or(QString());
        EXPECT_TRUE(error.startsWith(file)) << error.toStdString();
        EXPECT_TRUE(error.contains(expected)) << error.toStdString();
        EXPECT_FALSE(error.contains(QStringLiteral("hunter2"))) << error.toStdString();
        EXPECT_EQ(config.getText(QStringLiteral("before")), QStringLiteral("kept"));
    }
    ASSERT_EQ(::mkfifo(QFile::encodeName(path(QStringLiteral("pipe"))).constData(), 0600), 0);
    EXPECT_TRUE(config.load(path(QStringLiteral("pipe"))).has_value());
    EXPECT_TRUE(config.load(path(QStringLiteral("missing"))).has_value());
}

TEST_F(ConfigFile, WarnsWhenOthersMayReadTheSecretKey)
{
    Config config;
    const LogCapture log;
    EXPECT_EQ(config.load(write(QStringLiteral("own.conf"), "k=v\n", 0600)), std::nullopt);
    EXPECT_TRUE(LogCapture::text().isEmpty());
    const auto open = write(QStringLiteral("open.conf"), "k=v\n", 0640);
    EXPECT_EQ(config.load(open), std::nullopt);
    EXPECT_TRUE(LogCapture::has(open) && LogCapture::has(QStringLiteral("0640")));
}
