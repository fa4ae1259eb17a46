#pragma once

#include "till/core/pace.h"
#include "till/core/store.h"

#include <host/config.h>

#include <QString>

namespace till {

/// Command-line options that override the settings file; an empty one does not.
struct SettingsOverrides
{
    QString config; ///< The settings file.
    QString plugin;
    QString data;
    QString language;
    QString log;
};

/// The till's own settings, with the options and defaults applied.
struct Settings
{
    QString pluginFile;
    QString dataDirectory;
    QString language; ///< Empty for the environment's language.
    QString logFile;  ///< Empty for standard error.
    TillPlace place;
    BackoffRange backoff;
};

/// Loads the settings file into `Config`, applies the options to it, and reads the till's own
/// settings. Use them only when `findProblems` has no fatal problem.
[[nodiscard]] tl::expected<Settings, Config::Refusal>
loadSettings(const SettingsOverrides &overrides);

} // namespace till
