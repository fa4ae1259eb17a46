#pragma once

#include <QString>

#include <iosfwd>

namespace till {

struct Settings;

/// Writes the till's figures as metrics, into the file if one is named, else to the output. A store
/// that cannot be read is a figure as well. \return The program's exit code: 1 when the file cannot
/// be written.
int runMetrics(const Settings &settings, const QString &file, std::ostream &output);

} // namespace till
