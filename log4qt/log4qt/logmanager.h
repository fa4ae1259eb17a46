#pragma once

#include "log4qt/logger.h"

namespace Log4Qt {

/// The registry of loggers.
class LOG4QT_EXPORT LogManager
{
public:
    /// The logger with that name: the same object on every call, alive until the process ends.
    /// `setup` is not read.
    static Logger *logger(const QString &name, const QString &setup = {});
};

} // namespace Log4Qt
