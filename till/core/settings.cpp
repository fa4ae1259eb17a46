#include "till/core/settings.h"

#include "till/core/loyaltyplugin.h"

#include <host/config.h>

#include <QFileInfo>
#include <QStandardPaths>

namespace till {

namespace {

QString chosen(const QString &option, const QString &key, const QString &defaultText = {})
{
    return option.isEmpty() ? Singleton<Config>::instance()->getText(key, defaultText) : option;
}

/// Without a word about one that is none: `checkSettings` has it.
int number(const QString &key, int defaultValue)
{
    bool isNumber = false;
    const auto value = Singleton<Config>::instance()->getText(key).toInt(&isNumber);
    return isNumber ? value : defaultValue;
}

std::chrono::milliseconds duration(const QString &key, std::chrono::milliseconds defaultValue)
{
    return std::chrono::milliseconds(number(key, static_cast<int>(defaultValue.count())));
}

} // namespace

Settings loadSettings(const SettingsOverrides &overrides, QString &error)
{
    Settings settings;
    settings.language = overrides.language; // in which even a bad file is told
    const auto file = Config::filePath(overrides.config);
    error = Singleton<Config>::instance()->load(file).value_or(QString());
    if (!error.isEmpty())
        return settings;
    const auto defaultData = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                             QLatin1String("/till");
    settings.pluginFile =
        LoyaltyPlugin::filePath(chosen(overrides.plugin, QStringLiteral("Till:plugin")));
    settings.dataDirectory =
        QFileInfo(chosen(overrides.data, QStringLiteral("Till:dataDir"), defaultData))
            .absoluteFilePath();
    settings.language = chosen(overrides.language, QStringLiteral("Till:language"));
    settings.logFile = chosen(overrides.log, QStringLiteral("Till:log"),
                              settings.dataDirectory + QLatin1String("/till.log"));
    if (settings.logFile == QLatin1String("-"))
        settings.logFile.clear();
    settings.place = {number(QStringLiteral("Till:shopCode"), settings.place.shopCode),
                      number(QStringLiteral("Till:cashCode"), settings.place.cashCode)};
    auto &backoff = settings.backoff;
    backoff.first = duration(QStringLiteral("Till:retryFirst"), backoff.first);
    backoff.longest = duration(QStringLiteral("Till:retryMax"), backoff.longest);
    return settings;
}

} // namespace till
