#pragma once

#include "till/core/backoff.h"
#include "till/core/store.h"

#include <QString>

namespace till {

/// What takes precedence over the settings file; empty texts are left to it.
struct SettingsOverrides
{
    QString config; ///< The file itself.
    QString plugin;
    QString data;
    QString language;
    QString log;
};

/// How the till is set up: its options, else its settings, else the defaults.
struct Settings
{
    QString pluginFile;
    QString dataDirectory;
    QString language; ///< Empty for the texts' own, Russian.
    QString logFile;  ///< Empty for standard error.
    TillPlace place;
    BackoffRange backoff;
};

/// Loads the settings file and reads the till's own settings from it. `error` says what is wrong
/// with the file; empty when it was read. What is wrong with the settings `checkSettings` says;
/// none of them is to be used while it has a fatal complaint.
Settings loadSettings(const SettingsOverrides &overrides, QString &error);

} // namespace till
