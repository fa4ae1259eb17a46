#pragma once

#include "simulator/options.h"

#include <QString>
#include <QStringList>

namespace simulator {

/// What the program was asked to do.
struct ProgramOptions
{
    Options simulator;
    QString portFile; ///< Where the port is written; empty for nowhere.
    QString help;     ///< To be printed instead of serving; empty otherwise.
    QString error;    ///< What is wrong with the command line; empty when nothing is.
};

/// Reads the command line, and the secret key from its file or the environment: on the command
/// line every process of the machine could read it.
ProgramOptions readProgramOptions(const QStringList &arguments);

} // namespace simulator
