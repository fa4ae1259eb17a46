#pragma once

#include "host/export.h"
#include "host/singleton.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

/// The till's settings: texts by key, read from one file.
///
/// A line of the file is "key=value"; the key is what stands before the first "=", the value every
/// character after it. Empty lines and lines that begin with "#" are skipped. There is no quoting
/// and no escaping, so a secret key or a mask comes back exactly as it was written; a blank at
/// either end of a value is refused, because nobody sees it.
class HOST_EXPORT Config
{
public:
    /// The settings file to use: `option` if not empty, else the environment variable TILL_CONFIG,
    /// else "till/till.conf" in the user's configuration directory, else, if it is there, in the
    /// machine's, "/etc/xdg".
    static QString filePath(const QString &option);

    /// Replaces all settings by those of the file.
    /// \return Why the file was refused (file, line, what was expected), nothing when it was read.
    ///         After a refusal the settings are as before.
    [[nodiscard]] std::optional<QString> load(const QString &path);

    /// The text stored under `key`, or `defaultText` when there is none.
    QString getText(const QString &key, const QString &defaultText = {}) const
    {
        return values.value(key, defaultText);
    }
    /// The integer stored under `key`, or `defaultValue` when there is none. A text that is no
    /// 32-bit integer gives `defaultValue` and a warning in the log that names the key.
    int getInt(const QString &key, int defaultValue) const;

    /// The keys that are set, in no order.
    QStringList keys() const { return values.keys(); }

    /// Sets one text for the life of the process, as a program's option does.
    void set(const QString &key, const QString &value) { values.insert(key, value); }
    /// Forgets all settings: every key has its default again.
    void clear() { values.clear(); }

private:
    QHash<QString, QString> values;
};

extern template class HOST_EXPORT Singleton<Config>;
