#pragma once

#include "till/core/backoff.h"
#include "till/core/sale.h"

#include <QString>

namespace till {

struct Options;

/// How the till is set up: its options, else its settings, else the defaults.
struct Settings
{
    QString pluginFile;
    QString dataDirectory;
    QString language; ///< Empty for the texts' own, Russian.
    QString logFile;  ///< Empty for standard error.
    TillPlace place;
    BackoffRange backoff;

    QString queueFile() const { return dataDirectory + QLatin1String("/queue.db"); }
};

/// Loads the settings file and reads the till's own settings from it. `error` says what is wrong
/// with the file or a setting; empty when all is well.
Settings loadSettings(const Options &options, QString &error);

} // namespace till
