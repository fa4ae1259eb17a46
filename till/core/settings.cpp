#include "till/core/settings.h"

#include "till/core/loyaltyplugin.h"
#include "till/core/settingtable.h"

#include <QFileInfo>
#include <QStandardPaths>

#include <array>

using namespace Qt::StringLiterals;

namespace till {

namespace {

QString textOr(QLatin1StringView key, const QString &otherwise)
{
    const auto text = settingText(key);
    return text.isEmpty() ? otherwise : text;
}

void apply(const SettingsOverrides &overrides, Config &config)
{
    struct Option
    {
        QLatin1StringView name;
        QLatin1StringView key;
        const QString &value;
    };
    for (const auto &[name, key, value] : {
             Option{"--plugin"_L1, "Till:plugin"_L1, overrides.plugin},
             Option{"--data"_L1, "Till:dataDir"_L1, overrides.data},
             Option{"--language"_L1, "Till:language"_L1, overrides.language},
             Option{"--log"_L1, "Till:log"_L1, overrides.log},
         }) {
        if (!value.isEmpty())
            config.set(key, value, name);
    }
}

} // namespace

tl::expected<Settings, Config::Refusal> loadSettings(const SettingsOverrides &overrides)
{
    auto &config = *Singleton<Config>::instance();
    if (const auto loaded = config.load(Config::filePath(overrides.config)); !loaded)
        return tl::unexpected(loaded.error());
    apply(overrides, config);
    const auto usualData =
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + "/till"_L1;
    Settings settings;
    settings.pluginFile = LoyaltyPlugin::filePath(settingText("Till:plugin"_L1));
    settings.dataDirectory = QFileInfo(textOr("Till:dataDir"_L1, usualData)).absoluteFilePath();
    settings.language = settingText("Till:language"_L1);
    settings.logFile = textOr("Till:log"_L1, settings.dataDirectory + "/till.log"_L1);
    if (settings.logFile == "-"_L1)
        settings.logFile.clear();
    settings.place = {settingNumber("Till:shopCode"_L1), settingNumber("Till:cashCode"_L1)};
    settings.backoff = {std::chrono::milliseconds(settingNumber("Http:retryFirst"_L1)),
                        std::chrono::milliseconds(settingNumber("Http:retryMax"_L1))};
    return settings;
}

} // namespace till
