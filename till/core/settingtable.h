#pragma once

#include <QLatin1StringView>
#include <QList>
#include <QString>

#include <limits>
#include <span>

namespace till {

/// A setting of the till, the platform or the plugin. Reading, check, help, sample file and page
/// all use the one table of settings.
struct Setting
{
    enum class Type {
        Text,
        Secret, ///< A text that is never shown.
        Number, ///< A whole number from `least` to `most`.
        Url,    ///< A service's URL, http or https.
        Language,
        File,      ///< A readable regular file.
        Place,     ///< A path; "~" is not expanded.
        Operation, ///< The key ends in the name of a service operation.
    };
    enum class Need {
        Optional,
        Own,      ///< Each till of a chain needs its own value.
        Required, ///< Without it the loyalty system does not work.
    };

    QLatin1StringView key; ///< A key that ends in ":" stands for all that begin with it.
    Type type = Type::Text;
    const char *usual = "";   ///< The default; empty for none.
    const char *meaning = ""; ///< A phrase without a full stop.
    Need need = Need::Optional;
    int least = 1;
    int most = std::numeric_limits<int>::max();

    /// The values it accepts, without words of a language: "1–3600", "en, ru".
    QString values() const;
    /// Whether the value is one of them.
    bool accepts(const QString &value) const;
};

/// All settings, in the order of their page.
std::span<const Setting> settingTable();
/// The setting with that key; null for an unknown key.
const Setting *findSetting(const QString &key);
/// The names of the service's operations.
QStringList knownOperations();

/// The configured text, else the default. The key must be in the table.
QString settingText(QLatin1StringView key);
/// The configured number; the default for a text that the setting does not accept.
int settingNumber(QLatin1StringView key);

/// A setting with an unusable value.
struct SettingProblem
{
    const Setting *setting;
    QString value;
    bool isFatal; ///< Whether the till must not start; else a part of the loyalty system fails.
};

/// The unusable settings, in the order of the table.
QList<SettingProblem> findProblems();

} // namespace till
