#pragma once

#include <QCommandLineParser>

#include <optional>

namespace till {

/// Parses the program's arguments. Prints the help, the version or what is wrong with them when the
/// program must end. \return Its exit code then.
[[nodiscard]] std::optional<int> parseCommandLine(QCommandLineParser &options);

} // namespace till
