#include "till/office/signalpause.h"

#include <pthread.h>

namespace till {

SignalPause::SignalPause()
{
    sigemptyset(&signalSet);
    sigaddset(&signalSet, SIGINT);
    sigaddset(&signalSet, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &signalSet, &before);
}

SignalPause::~SignalPause()
{
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

bool SignalPause::isStopped()
{
    rest(std::chrono::milliseconds::zero(), false);
    return stopped;
}

void SignalPause::rest(std::chrono::milliseconds time, bool /*wakeable*/)
{
    if (stopped)
        return;
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time);
    const timespec limit = {seconds.count(), std::chrono::nanoseconds(time - seconds).count()};
    stopped = sigtimedwait(&signalSet, nullptr, &limit) > 0;
}

} // namespace till
