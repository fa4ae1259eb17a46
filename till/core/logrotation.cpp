#include "till/core/logrotation.h"

#include <host/logging.h>

#include <log4qt/logger.h>
#include <log4qt/logmanager.h>

namespace till {

LogRotation::LogRotation()
{
    // One that is ignored would not be waited for either.
    std::signal(SIGHUP, SIG_DFL);
    sigemptyset(&hangUp);
    sigaddset(&hangUp, SIGHUP);
    pthread_sigmask(SIG_BLOCK, &hangUp, nullptr);
    thread = std::thread([this] { wait(); });
}

LogRotation::~LogRotation()
{
    stopped = true;
    pthread_kill(thread.native_handle(), SIGHUP);
    thread.join();
}

void LogRotation::wait()
{
    int signal = 0;
    while (sigwait(&hangUp, &signal) == 0 && !stopped) {
        if (const auto problem = logging::reopen())
            Log4Qt::LogManager::logger(QStringLiteral("till.log"))->error(*problem);
    }
}

} // namespace till
