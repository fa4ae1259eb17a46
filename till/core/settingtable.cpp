#include "till/core/settingtable.h"

#include "till/core/catalogue.h"

#include <host/config.h>

#include <QFile>
#include <QFileInfo>
#include <QUrl>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace till {

namespace {

using enum Setting::Type;
using enum Setting::Need;

constexpr std::array table{
    Setting{"LmMindbox:url"_L1, Url, "", "URL of the loyalty service", Required},
    Setting{"LmMindbox:endpoint"_L1, Text, "", "the shop's endpoint at the service", Required},
    Setting{"LmMindbox:secretKey"_L1, Secret, "", "secret key of the endpoint", Required},
    Setting{"LmMindbox:pointOfContact"_L1, Text, "Offline", "point of contact in every request"},
    Setting{"LmMindbox:timeout"_L1, Number, "5", "seconds that a whole exchange may take", Optional,
            1, 3'600},
    Setting{"LmMindbox:productIdName"_L1, Text, "websiteLumaret", "name of a product's identifier"},
    Setting{"LmMindbox:productIdMask"_L1, Text, "%(position.code[s])",
            "mask of a product's identifier: docs/masks.md"},
    Setting{"LmMindbox:requestTransactionIdName"_L1, Text, "externalOrderIdLm",
            "name of an order's identifier"},
    Setting{"LmMindbox:requestTransactionIdMask"_L1, Text,
            "%(document.shopCode[04d])%(document.cashCode[02d])%(document.shift[04d])"
            "%(document.num[07d])%(document.dateTimeBeg[hhmmss])",
            "mask of an order's identifier: docs/masks.md"},
    Setting{"LmMindbox:changeOrderStatusLinesStatus"_L1, Text, "Paid",
            "status of the lines of a sold receipt"},
    Setting{"LmMindbox.Redirect:"_L1, Operation, "",
            "another name of that operation, shown in the log only"},
    Setting{"Mindbox:responseTransactionIdName"_L1, Text, "offlineTransactionIdVantor",
            "name of an order's identifier in the service's answer; no workflow reads it"},
    Setting{"Http:caFile"_L1, File, "",
            "PEM file of a private certificate authority; none: the system's authorities"},
    Setting{"Http:proxy"_L1, Text, "",
            "proxy for all but loopback; none: the environment's http_proxy, https_proxy, "
            "all_proxy; no_proxy names exceptions to both"},
    Setting{"Http:retryFirst"_L1, Number, "1000",
            "milliseconds until a service that failed is asked again; each failure doubles them; "
            "0: every sale asks, and waits",
            Optional, 0},
    Setting{"Http:retryMax"_L1, Number, "30000", "the longest such time", Optional, 0},
    Setting{"Till:shopCode"_L1, Number, "1", "number of the shop", Own},
    Setting{"Till:cashCode"_L1, Number, "1", "number of the register in the shop", Own},
    Setting{"Till:dataDir"_L1, Place, "",
            "data directory; none: till in the user's data directory"},
    Setting{"Till:log"_L1, Place, "",
            "log file, \"-\" for standard error; none: till.log in the data directory"},
    Setting{"Till:plugin"_L1, File, "",
            "plugin module; none: lmmindbox.so beside the program, in ../lib or where an "
            "installation has it"},
    Setting{"Till:language"_L1, Language, "", "language of the texts; none: that of LANG, else en"},
    Setting{"Till:goodsFile"_L1, File, "",
            "goods of the window: CSV in UTF-8, comma or semicolon; the head line names code, "
            "name and price"},
    Setting{"Till:phoneMask"_L1, Text, "+7(999)-999-99-99;_",
            "how the window takes a phone: 9 is a digit, the character after ; an empty place"},
    Setting{"Till:scanGap"_L1, Number, "30",
            "the longest pause between two characters of a scan, in milliseconds", Optional, 1,
            1'000},
    Setting{"Till:scanLength"_L1, Number, "4", "the fewest characters of a scan", Optional, 1, 100},
    Setting{"Till:scanPrefix"_L1, Text, "", "text that the scanner sends first"},
    Setting{"Till:askQuantity"_L1, Number, "100", "the window asks about a larger quantity"},
    Setting{"Till:askPrice"_L1, Number, "100000", "the window asks about a higher price"},
    Setting{"Till:keepDays"_L1, Number, "90", "days that a finished receipt is kept"},
};

bool isService(const QString &value)
{
    const QUrl url(value, QUrl::StrictMode);
    return (url.scheme() == "https"_L1 || url.scheme() == "http"_L1) && !url.host().isEmpty();
}

/// Reading a pipe or a device might block or never end.
bool isReadable(const QString &path)
{
    return QFileInfo(path).isFile() && QFile(path).open(QIODevice::ReadOnly);
}

bool isFatal(const Setting &setting, const QString &value)
{
    switch (setting.type) {
    case Number:
    case Language:
        return setting.key.startsWith("Till:"_L1);
    case File:
        return value.startsWith(u'~') || (QFileInfo::exists(value) && !QFileInfo(value).isFile());
    default:
        return setting.type == Place;
    }
}

} // namespace

QString Setting::values() const
{
    switch (type) {
    case Number:
        return most == std::numeric_limits<int>::max() ? u"≥ %1"_s.arg(least)
                                                       : u"%1–%2"_s.arg(least).arg(most);
    case Url:
        return u"https://HOST/v3/operations/sync"_s;
    case Language:
        return availableLanguages().join(", "_L1);
    case File:
    case Place:
        return u"/PATH"_s;
    default:
        return {};
    }
}

bool Setting::accepts(const QString &value) const
{
    switch (type) {
    case Number: {
        bool isNumber = false;
        const auto number = value.toInt(&isNumber);
        return isNumber && number >= least && number <= most;
    }
    case Url:
        return isService(value);
    case Language:
        return availableLanguages().contains(value);
    case File:
        return isReadable(value);
    case Place:
        return !value.startsWith(u'~');
    default:
        return true;
    }
}

std::span<const Setting> settingTable()
{
    return table;
}

const Setting *findSetting(const QString &key)
{
    const auto *const found = std::find_if(table.begin(), table.end(), [&](const auto &setting) {
        return key == setting.key || (setting.type == Operation && key.startsWith(setting.key) &&
                                      knownOperations().contains(key.sliced(setting.key.size())));
    });
    return found == table.end() ? nullptr : found;
}

QStringList knownOperations()
{
    return u"Offline.GetCustomer Offline.RegisterCustomer Offline.EditCustomer "
           "Offline.ResendMobilePhoneConfirmationCode Offline.ConfirmMobilePhone "
           "Offline.CheckMobilePhoneAuthorizationCode Offline.EmailConfirmationLetter "
           "Offline.CreateAuthorizedOrder Offline.ChangeStatus"_s.split(u' ');
}

QString settingText(QLatin1StringView key)
{
    return Singleton<Config>::instance()->getText(key, QLatin1StringView(findSetting(key)->usual));
}

int settingNumber(QLatin1StringView key)
{
    const auto *const setting = findSetting(key);
    const auto text = settingText(key);
    return setting->accepts(text) ? text.toInt() : QLatin1StringView(setting->usual).toInt();
}

QList<SettingProblem> findProblems()
{
    QList<SettingProblem> problems;
    for (const auto &setting : table) {
        const auto value = settingText(setting.key);
        if (!value.isEmpty() && !setting.accepts(value))
            problems.append({&setting, value, isFatal(setting, value)});
    }
    return problems;
}

} // namespace till
