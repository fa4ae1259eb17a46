#pragma once

#include "log4qt/logger.h"

namespace Log4Qt {

/// The registry of loggers.
class LOG4QT_EXPORT LogManager
{
public:
    /// The logger of that name, the same one on every call, alive until the process ends. Nothing
    /// is set up from the second text here; callers give none or an empty one.
    static Logger *logger(const QString &name, const QString &setup = {});
};

} // namespace Log4Qt
