#include "log4qt/logmanager.h"

#include <memory>
#include <mutex>
#include <unordered_map>

namespace Log4Qt {

Logger *LogManager::logger(const QString &name, const QString & /*setup*/)
{
    static std::mutex mutex;
    // Never destroyed: static objects may log while they end.
    static auto &loggers = *new std::unordered_map<QString, std::unique_ptr<Logger>>;
    const std::scoped_lock lock(mutex);
    auto &logger = loggers[name];
    if (!logger)
        logger = std::make_unique<Logger>(name.toUtf8());
    return logger.get();
}

} // namespace Log4Qt
