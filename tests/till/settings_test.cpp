#include "tests/support/printqt.h"

#include "till/core/settingscheck.h"
#include "till/office/commands.h"

#include <host/config.h>

#include <QDirIterator>
#include <QRegularExpression>

#include <gtest/gtest.h>

namespace {

/// The settings of a till about which nothing can be said.
Config goodSettings()
{
    Config config;
    for (const auto &[key, value] :
         {std::pair{"LmMindbox:url", "https://loyalty.example/v3/operations/sync"},
          std::pair{"LmMindbox:endpoint", "shop"}, std::pair{"LmMindbox:secretKey", "s3cret"},
          std::pair{"Till:shopCode", "12"}, std::pair{"Till:cashCode", "3"}})
        config.set(QString::fromLatin1(key), QString::fromLatin1(value));
    return config;
}

/// What is said when one of the good settings is another, or there is one more.
QStringList complaintsOf(const QString &key, const QString &value)
{
    auto config = goodSettings();
    config.set(key, value);
    QStringList texts;
    for (const auto &complaint : till::checkSettings(config))
        texts.append(QStringLiteral("%1 %2")
                         .arg(static_cast<int>(complaint.weight))
                         .arg(till::textOf(complaint)));
    return texts;
}

// What "till check" is shown to tell apart as a program is not repeated here.
TEST(SettingsCheck, EachWrongSettingIsNamedWithItsValueAndWhatWasExpected)
{
    struct Case
    {
        const char *key;
        const char *value;
        const char *complaint; ///< Behind its weight; empty for none.
    };
    for (const auto &[key, value, complaint] : {
             Case{"LmMindbox:timeout", "5s",
                  "1 LmMindbox:timeout=5s: expected a whole number, 1 to 3600"},
             Case{"LmMindbox:timeout", "3600", ""},
             Case{"Http:retryFirst", "0", ""},
             Case{"LmMindbox:url", "http://127.0.0.1:8080/v3/operations/sync", ""},
             Case{"LmMindbox:url", "loyalty.example",
                  "1 LmMindbox:url=loyalty.example: expected a URL such as "
                  "https://HOST/v3/operations/sync"},
             Case{"LmMindboks:timeout", "1",
                  "0 LmMindboks:timeout: unknown key, did you mean LmMindbox:timeout?"},
             Case{"Till:wallpaper", "red", "0 Till:wallpaper: unknown key"},
             Case{"Scales:port", "1", ""},
             Case{"LmMindbox.Redirect:Offline.GetCustomer", "Other", ""},
             Case{"Till:cashCode", "-3",
                  "2 Till:cashCode=-3: expected a whole number, 1 to 2147483647"},
             Case{"Till:language", "de", "2 Till:language=de: expected one of en, ru"},
             Case{"Till:retryFirst", "60001",
                  "2 Till:retryMax: expected at least the value of Till:retryFirst"},
             Case{"Http:caFile", "/nowhere/ca.pem",
                  "1 Http:caFile=/nowhere/ca.pem: expected a file"},
         }) {
        SCOPED_TRACE(std::string(key) + "=" + value);
        EXPECT_EQ(complaintsOf(QString::fromLatin1(key), QString::fromLatin1(value)).join(u'\n'),
                  QString::fromLatin1(complaint));
    }
}

TEST(SettingsCheck, KnowsEveryKeyThatIsReadAnywhereOrDescribed)
{
    const QDir root(QStringLiteral(PRODUCT_DIR "/.."));
    QStringList files{root.filePath(QStringLiteral("README.md"))};
    for (const auto room : {"src", "host", "till"}) {
        QDirIterator iterator(root.filePath(QLatin1String(room)), {QStringLiteral("*.cpp")},
                              QDir::Files, QDirIterator::Subdirectories);
        while (iterator.hasNext())
            files.append(iterator.next());
    }
    const QRegularExpression pattern(
        QStringLiteral("[\"`]((LmMindbox|Mindbox|Till|Http)(\\.Redirect)?:[A-Za-z]+)"));
    int found = 0;
    for (const auto &name : std::as_const(files)) {
        QFile file(name);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
        auto matches = pattern.globalMatch(QString::fromUtf8(file.readAll()));
        while (matches.hasNext()) {
            const auto key = matches.next().captured(1);
            ++found;
            EXPECT_FALSE(complaintsOf(key, QStringLiteral("1"))
                             .join(u' ')
                             .contains(QStringLiteral("unknown key")))
                << name.toStdString() << ": " << key.toStdString();
        }
    }
    EXPECT_GT(found, 40);
}

} // namespace
