#pragma once

#include <QtGlobal>

#include <clocale>
#include <langinfo.h>
#include <string_view>

namespace till {

/// Chooses C.UTF-8 when the environment's locale is not UTF-8, as under cron or ssh: Qt would print
/// a four-line warning. Call it before creating the application object.
inline void chooseUtf8()
{
    std::setlocale(LC_CTYPE, "");
    if (std::string_view(nl_langinfo(CODESET)) == "UTF-8")
        return;
    // LC_ALL, when set, overrides LC_CTYPE.
    qputenv(qEnvironmentVariableIsEmpty("LC_ALL") ? "LC_CTYPE" : "LC_ALL", "C.UTF-8");
}

} // namespace till
