#pragma once

#include "host/export.h"
#include "host/singleton.h"

#include <QCoreApplication>
#include <QHash>
#include <QString>
#include <QStringList>

#include <tl/expected.hpp>

/// The till's settings: texts by key. They are read from a file such as "till.conf", then from the
/// files "till.conf.d/*.conf" in the order of their names. A later file wins.
///
/// A line is "key=value": the first "=" ends the key, and the rest of the line is the value. An
/// empty value undoes the setting of an earlier file. Empty lines and lines that begin with "#" are
/// skipped. There is no quoting and no escaping, so a secret key or a mask is read exactly as
/// written. A blank at either end of a value is refused, because a person overlooks it.
class HOST_EXPORT Config
{
    Q_DECLARE_TR_FUNCTIONS(Config)

public:
    /// The reason for refusing settings.
    struct Refusal
    {
        QString file;
        int line = 0; ///< From 1; 0 when the file could not be read.
        QString reason;

        /// All of it on one line.
        QString text() const;
    };

    /// The settings file to use: `option` unless empty, else the environment variable TILL_CONFIG,
    /// else the first existing "till/till.conf" in the user's configuration directory or in
    /// "/etc/xdg". When neither exists, the user's.
    static QString filePath(const QString &option);

    /// Replaces all settings with those of the file and of its ".d" directory. After a refusal the
    /// settings stay as they were.
    [[nodiscard]] tl::expected<void, Refusal> load(const QString &path);

    /// The text of `key`, or `defaultText` when it is not set.
    QString getText(const QString &key, const QString &defaultText = {}) const
    {
        return values.value(key, defaultText);
    }
    /// The integer of `key`, or `defaultValue` when it is not set. A text that is no 32-bit integer
    /// gives `defaultValue` and logs a warning that names the key.
    int getInt(const QString &key, int defaultValue) const;

    /// The files that were read; a later one overrides the earlier ones.
    const QStringList &files() const { return read; }
    /// All keys that are set, also to an empty value, in no order.
    QStringList keys() const { return origins.keys(); }
    /// Where the key is set: "FILE:LINE" or a program's option; empty when it is not set.
    QString origin(const QString &key) const { return origins.value(key); }
    /// The files that hold the secret key and that other users can read.
    const QStringList &exposedFiles() const { return exposed; }

    /// Sets one text for the life of the process, as a program's option does.
    void set(const QString &key, const QString &value, const QString &origin = {});
    /// Forgets all settings: every key has its default again.
    void clear() { *this = {}; }

private:
    tl::expected<void, Refusal> add(const QString &path);

    QHash<QString, QString> values;
    QHash<QString, QString> origins;
    QStringList read;
    QStringList exposed;
};

extern template class HOST_EXPORT Singleton<Config>;
