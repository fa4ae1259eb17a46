#pragma once

#include <QList>
#include <QString>

class Config;

namespace till {

/// Something about a setting that cannot work, or hardly as it was meant.
struct SettingComplaint
{
    enum class Kind {
        UnknownKey, ///< `expected` is the known key that is near, empty for none.
        Missing,    ///< The loyalty system cannot do without.
        NotNumber,  ///< `expected`: the range.
        NotOneOf,   ///< `expected`: the words.
        NoUrl,      ///< No http or https URL with a host.
        OtherPath,  ///< The URL's path; `expected`: the service's.
        KeyInClear, ///< http to another machine: the secret key can be read on the way.
        Quoted,     ///< In quotation marks, which belong to the value.
        HomeSign,   ///< Begins with "~", which only a shell understands.
        NoFile,
        BelowOther, ///< `expected`: the key whose value it must reach.
        TakenAsOne, ///< Shop or register not set: 1, as for every other till that does not say.
    };
    enum class Weight {
        Doubtful, ///< The till works, perhaps not as it was meant.
        Wrong,    ///< The till sells, but not all of the loyalty system works.
        Fatal,    ///< The till must not start.
    };

    Kind kind = Kind::UnknownKey;
    Weight weight = Weight::Doubtful;
    QString key;
    QString value = {}; ///< Empty for the secret key and for an unknown one.
    QString expected = {};

    bool operator==(const SettingComplaint &other) const = default;
};

/// Everything that can be said against the settings without asking anybody, in the order of the
/// keys. Keys of other prefixes than ours are left alone unless they are near one of ours.
QList<SettingComplaint> checkSettings(const Config &config);

} // namespace till
