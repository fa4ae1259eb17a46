#include "till/core/settings.h"

#include "till/core/loyaltyplugin.h"
#include "till/core/numbers.h"

#include <host/config.h>

#include <QFileInfo>
#include <QStandardPaths>

#include <limits>

namespace till {

namespace {

/// Reads the till's settings, the key without its prefix. The first problem met is kept.
class SettingsReader
{
public:
    QString text(const QString &option, const QString &key, const QString &defaultText = {}) const
    {
        return option.isEmpty() ? config.getText(fullKey(key), defaultText) : option;
    }

    int number(const QString &key, int defaultValue)
    {
        constexpr auto largest = std::numeric_limits<int>::max();
        const auto value =
            parseWhole(config.getText(fullKey(key), QString::number(defaultValue)), 1, largest);
        if (!value && problem.isEmpty())
            problem = QStringLiteral("%1: expected a whole number from 1 to %2")
                          .arg(fullKey(key))
                          .arg(largest);
        return value.value_or(defaultValue);
    }

    QString problem;

private:
    static QString fullKey(const QString &key) { return QLatin1String("Till:") + key; }

    const Config &config = *Singleton<Config>::instance();
};

BackoffRange readBackoff(SettingsReader &reader)
{
    BackoffRange range;
    range.first = std::chrono::milliseconds(
        reader.number(QStringLiteral("retryFirst"), static_cast<int>(range.first.count())));
    range.longest = std::chrono::milliseconds(
        reader.number(QStringLiteral("retryMax"), static_cast<int>(range.longest.count())));
    if (range.longest < range.first && reader.problem.isEmpty())
        reader.problem = QStringLiteral("Till:retryMax: expected at least Till:retryFirst");
    return range;
}

} // namespace

Settings loadSettings(const SettingsOverrides &overrides, QString &error)
{
    const auto file = Config::filePath(overrides.config);
    error = Singleton<Config>::instance()->load(file).value_or(QString());
    if (!error.isEmpty())
        return {};
    const auto defaultData = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                             QLatin1String("/till");
    SettingsReader reader;
    Settings settings;
    settings.pluginFile =
        LoyaltyPlugin::filePath(reader.text(overrides.plugin, QStringLiteral("plugin")));
    settings.dataDirectory =
        QFileInfo(reader.text(overrides.data, QStringLiteral("dataDir"), defaultData))
            .absoluteFilePath();
    settings.language = reader.text(overrides.language, QStringLiteral("language"));
    settings.logFile = reader.text(overrides.log, QStringLiteral("log"),
                                   settings.dataDirectory + QLatin1String("/till.log"));
    if (settings.logFile == QLatin1String("-"))
        settings.logFile.clear();
    settings.place = {reader.number(QStringLiteral("shopCode"), 1),
                      reader.number(QStringLiteral("cashCode"), 1)};
    settings.backoff = readBackoff(reader);
    if (!reader.problem.isEmpty())
        error = QStringLiteral("%1: %2").arg(file, reader.problem);
    return settings;
}

} // namespace till
