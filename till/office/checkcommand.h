#pragma once

#include "till/core/settings.h"

#include <iosfwd>

namespace till {

/// What "till check" is asked for.
struct CheckRequest
{
    QString phone;   ///< To look up; empty for one that nobody has.
    QString metrics; ///< The file for the result as metrics; empty for none.
    bool asJson = false;
};

/// Says whether this till will work: a line for each thing looked at and how it is mended. Writes
/// nothing but the answer, except that a store of an older version is brought forward.
/// \return The program's exit code: 0, 1 with a warning, 2 when something failed.
int runCheck(const SettingsOverrides &overrides, const CheckRequest &request, std::ostream &output);

} // namespace till
