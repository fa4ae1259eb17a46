#include "support.h"

#include <host/config.h>

using ConfigFile = WithFiles;

TEST_F(ConfigFile, ReturnsValuesCharacterForCharacter)
{
    Config config;
    ASSERT_TRUE(config.load(write(u"till.conf"_s, "# comment\n\n"
                                                  "LmMindbox:secretKey=a=b, \"c\"; \\d#%1\n"
                                                  "mask=%(position.code[s]) \u043a\u043e\u0434\n"
                                                  "empty=\n"
                                                  "number=-42\n"
                                                  "wide=2147483648\n"
                                                  "last=without a line feed")));
    QStringList values;
    for (const auto &key : {u"LmMindbox:secretKey"_s, u"mask"_s, u"empty"_s, u"last"_s})
        values += config.getText(key, u"default"_s);
    EXPECT_EQ(values, QStringList({u"a=b, \"c\"; \\d#%1"_s, u"%(position.code[s]) код"_s,
                                   u"default"_s, u"without a line feed"_s}));
    EXPECT_EQ(config.getInt(u"number"_s, 5), -42);

    const LogCapture log;
    EXPECT_EQ(config.getInt(u"missing"_s, 5), 5);
    EXPECT_TRUE(LogCapture::text().isEmpty());
    EXPECT_EQ(config.getInt(u"wide"_s, 5), 5);
    EXPECT_TRUE(LogCapture::has(u"\"wide\""_s));
    EXPECT_FALSE(LogCapture::has(u"2147483648"_s));
}

TEST_F(ConfigFile, RefusesADamagedFileWithItsLineAndKeepsWhatItHad)
{
    const std::pair<QByteArray, QString> cases[] = {
        {"a=1\nhunter2\n", u":2: expected key=value"_s},
        {"=hunter2\n", u":1: expected key=value"_s},
        {"k =hunter2\n", u":1: expected no blank around the key"_s},
        {"k= hunter2\n", u":1: expected no blank at the ends of the value of \"k\""_s},
        {"k=hunter2\t\n", u":1: expected no blank at the ends"_s},
        {"k=hunter2\r\n", u":1: expected the line to end with a line feed alone"_s},
        {"k=hunter2\xff\n", u":1: expected UTF-8"_s},
        {QByteArray("k=hunter2\0\n", 11), u":1: expected text, found a null"_s},
        {"\xEF\xBB\xBFk=hunter2\n", u":1: expected no byte order mark"_s},
        {"%2=1\n#\n%2=hunter2\n", u":3: expected each key once, \"%2\" already stands in line 1"_s},
        {QByteArray(2 << 20, 'x'), u"expected at most 1048576 bytes"_s},
    };
    Config config;
    config.set(u"before"_s, u"kept"_s);
    for (const auto &[content, expected] : cases) {
        SCOPED_TRACE(expected.toStdString());
        const auto file = write(u"bad%2%3.conf"_s, content);
        const auto loaded = config.load(file);
        ASSERT_FALSE(loaded);
        const auto error = loaded.error().text();
        EXPECT_TRUE(error.startsWith(file)) << error.toStdString();
        EXPECT_TRUE(error.contains(expected)) << error.toStdString();
        EXPECT_FALSE(error.contains(u"hunter2"_s)) << error.toStdString();
        EXPECT_EQ(config.getText(u"before"_s), u"kept"_s);
    }
    ASSERT_EQ(::mkfifo(qPrintable(path(u"pipe"_s)), 0600), 0);
    EXPECT_FALSE(config.load(path(u"pipe"_s)));
    EXPECT_FALSE(config.load(path(u"missing"_s)));
}

TEST_F(ConfigFile, LaterFilesBesideItWinAndAreNamed)
{
    const auto file = write(u"till.conf"_s, "own=1\nboth=1\nback=1\n");
    ASSERT_TRUE(QDir(path({})).mkdir(u"till.conf.d"_s));
    const auto last = write(u"till.conf.d/20.conf"_s, "\nboth=3\nback=\n");
    const auto first = write(u"till.conf.d/10.conf"_s, "both=2\nchain=2\n");
    write(u"till.conf.d/20.conf.dpkg-old"_s, "both=4\n");
    Config config;
    ASSERT_TRUE(config.load(file));
    const std::tuple<QString, QString, QString> settings[] = {
        {u"own"_s, u"1"_s, file + u":1"_s},
        {u"both"_s, u"3"_s, last + u":2"_s},
        {u"back"_s, u"usual"_s, last + u":3"_s},
        {u"chain"_s, u"2"_s, first + u":2"_s},
    };
    for (const auto &[key, value, origin] : settings) {
        EXPECT_EQ(config.getText(key, u"usual"_s), value);
        EXPECT_EQ(config.origin(key), origin);
    }
    EXPECT_EQ(config.files(), QStringList({file, first, last}));

    write(u"till.conf.d/10.conf"_s, "both\n");
    const auto refused = config.load(file);
    ASSERT_FALSE(refused);
    EXPECT_EQ(refused.error().text(), first + u":1: expected key=value"_s);
}

TEST_F(ConfigFile, WarnsWhenOthersMayReadTheSecretKey)
{
    Config config;
    const LogCapture log;
    const QByteArray key = "LmMindbox:secretKey=k\n";
    EXPECT_TRUE(config.load(write(u"own.conf"_s, key, 0600)));
    EXPECT_TRUE(config.load(write(u"common.conf"_s, "k=v\n", 0644)));
    EXPECT_TRUE(LogCapture::text().isEmpty());
    const auto open = write(u"open.conf"_s, key, 0640);
    EXPECT_TRUE(config.load(open));
    EXPECT_EQ(config.exposedFiles(), QStringList(open));
    EXPECT_TRUE(LogCapture::has(open));
}
