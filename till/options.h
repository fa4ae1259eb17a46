#pragma once

#include "till/core/settings.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace till {

/// What the command line asks for.
struct Options
{
    SettingsOverrides settings;
    bool deliversInBackground = true;
    bool once = false;
    bool echo = false;
    bool json = false;
    ReceiptFilter receipts;
    QString phone;       ///< Of the look-up of "check"; empty for its own.
    QString output;      ///< File that "metrics" or "check" writes; empty for none.
    QStringList command; ///< Empty for selling.
};

/// A command line as it was read.
struct CommandLine
{
    std::optional<Options> options; ///< Nothing when the program is to end.
    QString text;                   ///< What to say before it ends.
    int exitCode = 0;
};

CommandLine parseCommandLine(const QStringList &arguments);

} // namespace till
