#include "till/core/settingscheck.h"

#include "till/core/backoff.h"
#include "till/core/catalogue.h"

#include <host/config.h>
#include <host/proxy.h>

#include <QFileInfo>
#include <QUrl>

#include <algorithm>
#include <array>
#include <limits>
#include <numeric>
#include <optional>
#include <vector>

namespace till {

namespace {

using Kind = SettingComplaint::Kind;
using Weight = SettingComplaint::Weight;

enum class Form { Text, Secret, Number, Url, Language, File, Place };

/// A setting that some part of the till reads.
struct KnownSetting
{
    QLatin1String key; ///< One that ends in ":" stands for all that begin with it.
    Form form = Form::Text;
    Weight weight = Weight::Wrong; ///< Of a value that cannot be.
    int least = 1;                 ///< Of a number.
    int most = std::numeric_limits<int>::max();
};

constexpr int longestTimeout = 3'600;

constexpr std::array knownSettings{
    KnownSetting{QLatin1String("LmMindbox:url"), Form::Url},
    KnownSetting{QLatin1String("LmMindbox:endpoint")},
    KnownSetting{QLatin1String("LmMindbox:secretKey"), Form::Secret},
    KnownSetting{QLatin1String("LmMindbox:pointOfContact")},
    KnownSetting{QLatin1String("LmMindbox:timeout"), Form::Number, Weight::Wrong, 1,
                 longestTimeout},
    KnownSetting{QLatin1String("LmMindbox:productIdName")},
    KnownSetting{QLatin1String("LmMindbox:productIdMask")},
    KnownSetting{QLatin1String("LmMindbox:requestTransactionIdName")},
    KnownSetting{QLatin1String("LmMindbox:requestTransactionIdMask")},
    KnownSetting{QLatin1String("LmMindbox:changeOrderStatusLinesStatus")},
    KnownSetting{QLatin1String("LmMindbox.Redirect:")},
    KnownSetting{QLatin1String("Mindbox:responseTransactionIdName")},
    KnownSetting{QLatin1String("Http:caFile"), Form::File},
    KnownSetting{QLatin1String("Http:proxy")},
    KnownSetting{QLatin1String("Http:retryFirst"), Form::Number, Weight::Wrong, 0},
    KnownSetting{QLatin1String("Http:retryMax"), Form::Number, Weight::Wrong, 0},
    KnownSetting{QLatin1String("Till:shopCode"), Form::Number, Weight::Fatal},
    KnownSetting{QLatin1String("Till:cashCode"), Form::Number, Weight::Fatal},
    KnownSetting{QLatin1String("Till:dataDir"), Form::Place},
    KnownSetting{QLatin1String("Till:log"), Form::Place},
    KnownSetting{QLatin1String("Till:plugin"), Form::Place},
    KnownSetting{QLatin1String("Till:goodsFile"), Form::File},
    KnownSetting{QLatin1String("Till:phoneMask")},
    KnownSetting{QLatin1String("Till:language"), Form::Language, Weight::Fatal},
    KnownSetting{QLatin1String("Till:retryFirst"), Form::Number, Weight::Fatal},
    KnownSetting{QLatin1String("Till:retryMax"), Form::Number, Weight::Fatal},
    KnownSetting{QLatin1String("Till:keepDays"), Form::Number, Weight::Fatal},
};
constexpr std::array requiredKeys{QLatin1String("LmMindbox:url"),
                                  QLatin1String("LmMindbox:endpoint"),
                                  QLatin1String("LmMindbox:secretKey")};
/// What an unset one means is no secret, but every till that does not say is the same one then.
constexpr std::array placeKeys{QLatin1String("Till:shopCode"), QLatin1String("Till:cashCode")};

/// How many letters must be put in, taken out or replaced to make one text of the other.
qsizetype distance(QStringView left, QStringView right)
{
    std::vector<qsizetype> row(static_cast<size_t>(right.size()) + 1);
    std::iota(row.begin(), row.end(), 0);
    for (qsizetype i = 0; i < left.size(); ++i) {
        auto diagonal = std::exchange(row.front(), i + 1);
        for (size_t j = 1; j < row.size(); ++j) {
            const auto isSame = left[i] == right[static_cast<qsizetype>(j) - 1];
            diagonal = std::exchange(
                row[j], std::min({row[j] + 1, row[j - 1] + 1, diagonal + (isSame ? 0 : 1)}));
        }
    }
    return row.back();
}

const KnownSetting *find(const QString &key)
{
    const auto *const found = std::find_if(
        knownSettings.begin(), knownSettings.end(), [&key](const KnownSetting &setting) {
            return setting.key.endsWith(u':') ? key.startsWith(setting.key) : key == setting.key;
        });
    return found == knownSettings.end() ? nullptr : found;
}

/// An unknown key: a slip of a known one, a key of ours that nobody reads, or no concern of ours.
std::optional<SettingComplaint> checkUnknown(const QString &key)
{
    constexpr qsizetype mostSlips = 3;
    QLatin1String nearest;
    auto slips = mostSlips + 1;
    for (const auto &setting : knownSettings) {
        const auto found = distance(key.toLower(), QString(setting.key).toLower());
        if (found < slips) {
            slips = found;
            nearest = setting.key;
        }
    }
    const auto isOurs = std::any_of(
        knownSettings.begin(), knownSettings.end(), [&key](const KnownSetting &setting) {
            return key.startsWith(setting.key.first(setting.key.indexOf(u':') + 1));
        });
    if (nearest.isEmpty() && !isOurs)
        return std::nullopt;
    // Without the value: it may be the secret key.
    return SettingComplaint{Kind::UnknownKey, Weight::Doubtful, key, {}, nearest};
}

bool isQuoted(const QString &value)
{
    return value.size() > 1 && value.front() == value.back() &&
           (value.front() == u'"' || value.front() == u'\'');
}

/// Checks one value; `complain` takes kind, weight and what was expected.
template<typename Complain>
void checkValue(const KnownSetting &setting, const QString &value, Complain complain)
{
    const auto servicePath = QStringLiteral("/v3/operations/sync");
    bool isNumber = false;
    if (isQuoted(value))
        complain(Kind::Quoted, Weight::Doubtful, QString());
    switch (setting.form) {
    case Form::Text:
    case Form::Secret:
        break;
    case Form::Number:
        if (const auto number = value.toInt(&isNumber);
            !isNumber || number < setting.least || number > setting.most)
            complain(Kind::NotNumber, setting.weight,
                     QStringLiteral("%1 to %2").arg(setting.least).arg(setting.most));
        break;
    case Form::Url: {
        const QUrl url(value, QUrl::StrictMode);
        const auto isClear = url.scheme() == QLatin1String("http");
        if ((!isClear && url.scheme() != QLatin1String("https")) || url.host().isEmpty())
            complain(Kind::NoUrl, setting.weight, QStringLiteral("https://HOST") + servicePath);
        else if (isClear && !isLoopback(url.host()))
            complain(Kind::KeyInClear, Weight::Doubtful, QStringLiteral("https"));
        if (!url.host().isEmpty() && url.path() != servicePath)
            complain(Kind::OtherPath, Weight::Doubtful, servicePath);
        break;
    }
    case Form::Language:
        if (const auto languages = availableLanguages(); !languages.contains(value))
            complain(Kind::NotOneOf, setting.weight, languages.join(QLatin1String(", ")));
        break;
    case Form::File:
    case Form::Place:
        if (value.startsWith(u'~'))
            complain(Kind::HomeSign, Weight::Fatal, QString());
        else if (setting.form == Form::File && !QFileInfo(value).isFile())
            complain(Kind::NoFile, setting.weight, QString());
    }
}

/// What is said of settings that are not there, or only of two together.
void checkTogether(const Config &config, QList<SettingComplaint> &complaints)
{
    for (const auto key : requiredKeys) {
        if (config.getText(key).isEmpty())
            complaints.append({Kind::Missing, Weight::Wrong, key});
    }
    for (const auto key : placeKeys) {
        if (config.getText(key).isEmpty())
            complaints.append({Kind::TakenAsOne, Weight::Doubtful, key});
    }
    const auto first = QStringLiteral("Till:retryFirst");
    const auto most = QStringLiteral("Till:retryMax");
    const auto isNumber = [&complaints](const QString &key) {
        return std::none_of(
            complaints.cbegin(), complaints.cend(),
            [&key](const SettingComplaint &complaint) { return complaint.key == key; });
    };
    constexpr BackoffRange usual;
    if (isNumber(first) && isNumber(most) &&
        config.getInt(most, static_cast<int>(usual.longest.count())) <
            config.getInt(first, static_cast<int>(usual.first.count())))
        complaints.append({Kind::BelowOther, Weight::Fatal, most, config.getText(most), first});
}

} // namespace

QList<SettingComplaint> checkSettings(const Config &config)
{
    QList<SettingComplaint> complaints;
    auto keys = config.keys();
    keys.sort();
    for (const auto &key : std::as_const(keys)) {
        const auto value = config.getText(key);
        const auto *const setting = find(key);
        if (!setting) {
            if (const auto complaint = checkUnknown(key))
                complaints.append(*complaint);
            continue;
        }
        const auto shown = setting->form == Form::Secret ? QString() : value;
        if (!value.isEmpty())
            checkValue(*setting, value, [&](Kind kind, Weight weight, const QString &expected) {
                complaints.append({kind, weight, key, shown, expected});
            });
    }
    checkTogether(config, complaints);
    return complaints;
}

} // namespace till
