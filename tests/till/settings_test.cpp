#include "tests/support/printqt.h"

#include "till/core/settingtable.h"
#include "till/office/finding.h"

#include <host/config.h>

#include <QDirIterator>
#include <QRegularExpression>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class SettingsTest : public testing::Test
{
protected:
    SettingsTest()
    {
        for (const auto &[key, value] :
             {std::pair{"LmMindbox:url"_L1, "https://loyalty.example/v3/operations/sync"_L1},
              std::pair{"LmMindbox:endpoint"_L1, "shop"_L1},
              std::pair{"LmMindbox:secretKey"_L1, "s3cret"_L1},
              std::pair{"Till:shopCode"_L1, "12"_L1}, std::pair{"Till:cashCode"_L1, "3"_L1}})
            config.set(key, value);
    }
    ~SettingsTest() override { config.clear(); }
    Q_DISABLE_COPY_MOVE(SettingsTest)

    /// The findings after one setting is changed or added.
    QString said(const QString &key, const QString &value)
    {
        const auto before = config;
        config.set(key, value);
        till::Findings findings;
        till::checkSettings(findings);
        config = before;
        QStringList texts;
        for (const auto &finding : std::as_const(findings.list)) {
            if (finding.level != till::Finding::Level::Ok)
                texts.append(finding.found);
        }
        return texts.join(u'\n');
    }

    Config &config = *Singleton<Config>::instance();
};

// The tests of "till check" as a program cover the rest.
TEST_F(SettingsTest, AWrongOneIsNamedWithItsValueAndWhatWasExpected)
{
    struct Case
    {
        const char *key;
        const char *value;
        const char *said; ///< The finding; empty for none.
    };
    for (const auto &[key, value, expected] : {
             Case{"LmMindbox:timeout", "5s", "LmMindbox:timeout: 5s: expected 1–3600"},
             Case{"LmMindbox:url", "loyalty.example",
                  "LmMindbox:url: loyalty.example: expected https://HOST/v3/operations/sync"},
             Case{"LmMindboks:timeout", "1",
                  "LmMindboks:timeout: unknown key, did you mean LmMindbox:timeout?"},
             Case{"Timeout", "1", "Timeout: unknown key, did you mean LmMindbox:timeout?"},
             Case{"Till:wallpaper", "red", "Till:wallpaper: unknown key"},
             Case{"Scales:port", "1", ""},
             Case{"LmMindbox.Redirect:Offline.GetCustomer", "Other", ""},
             Case{"Till:cashCode", "-3", "Till:cashCode: -3: expected ≥ 1"},
             Case{"Till:phoneMask", "+375 (99) 999-99-99", ""},
             Case{"Till:phoneMask", "9999999999;_", ""},
         }) {
        SCOPED_TRACE(std::string(key) + "=" + value);
        EXPECT_EQ(said(QString::fromUtf8(key), QString::fromUtf8(value)).toStdString(), expected);
    }
}

TEST_F(SettingsTest, KnowEveryKeyThatIsReadAnywhere)
{
    const QDir root(QStringLiteral(PRODUCT_DIR "/.."));
    QStringList files;
    for (const auto room : {"src", "host", "till"}) {
        QDirIterator iterator(root.filePath(QLatin1String(room)), {u"*.cpp"_s}, QDir::Files,
                              QDirIterator::Subdirectories);
        while (iterator.hasNext())
            files.append(iterator.next());
    }
    const QRegularExpression pattern(
        u"[\"`]((LmMindbox|Mindbox|Till|Http)(\\.Redirect)?:[A-Za-z]+)"_s);
    int found = 0;
    for (const auto &name : std::as_const(files)) {
        QFile file(name);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
        auto matches = pattern.globalMatch(QString::fromUtf8(file.readAll()));
        while (matches.hasNext()) {
            const auto key = matches.next().captured(1);
            ++found;
            EXPECT_FALSE(said(key, u"1"_s).contains("unknown key"_L1))
                << name.toStdString() << ": " << key.toStdString();
        }
    }
    EXPECT_GT(found, 30);
}

/// Compares the text with the file's part between two lines, or with the whole file when they are
/// empty. Writes the text into the file instead when WRITE_SETTINGS is set.
void compare(const QString &name, const QString &begin, const QString &text)
{
    QFile file(QStringLiteral(PRODUCT_DIR "/../") + name);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    const auto content = QString::fromUtf8(file.readAll());
    const auto start = content.indexOf(begin) + begin.size();
    const auto end = content.indexOf("\n\n"_L1, start - 1);
    const auto rest = begin.isEmpty() || end < 0 ? QString() : content.sliced(end + 1);
    const auto expected = content.first(start) + text + rest;
    if (qEnvironmentVariableIsSet("WRITE_SETTINGS")) {
        ASSERT_TRUE(file.seek(0) && file.resize(0));
        file.write(expected.toUtf8());
    } else {
        EXPECT_EQ(content.toStdString(), expected.toStdString()) << "WRITE_SETTINGS= writes it";
    }
}

TEST(SettingTable, IsThePageAndTheSampleOfAPackage)
{
    const auto latin1 = [](const char *words) { return QLatin1StringView(words); };
    const QHash<QString, QString> ofPackage{{u"Till:dataDir"_s, u"/var/lib/loyalty-till"_s},
                                            {u"Till:log"_s, u"/var/log/loyalty-till/till.log"_s}};
    QString rows;
    QString sample =
        u"# Settings of the till: key=value; every character after the \"=\" counts, quotation\n"
        "# marks too. An empty value is the default. \"till check\" says whether a till will\n"
        "# work with them. Files till.conf.d/*.conf beside this one win over it.\n"_s;
    for (const auto &setting : till::settingTable()) {
        const auto isPrefix = setting.key.endsWith(u':');
        const auto key = setting.key + (isPrefix ? u"OPERATION"_s : QString());
        const auto usual = latin1(setting.usual);
        const auto meaning = latin1(setting.meaning);
        const auto quoted = [](const QString &text) {
            return text.isEmpty() ? text : u"`%1`"_s.arg(text);
        };
        rows += u"| `%1` | %2 | %3 | %4 |\n"_s.arg(key, setting.values(), quoted(usual), meaning);
        const auto value = ofPackage.value(key);
        sample += u"\n# %1\n%2%3=%4\n"_s.arg(meaning, value.isEmpty() ? u"#"_s : QString(), key,
                                             value.isEmpty() ? QString(usual) : value);
    }
    compare(u"docs/settings.md"_s, u"|---|---|---|---|\n"_s, rows);
    compare(u"packaging/till.conf"_s, {}, sample);
}

} // namespace
