#pragma once

#include <QtGlobal>

#include <atomic>
#include <csignal>
#include <thread>

namespace till {

/// Has the log opened anew at each SIGHUP, so that one that was renamed is let go.
///
/// To be made before any other thread: in one that is older the signal would end the program. A
/// terminal that hangs up ends the till by the end of its input.
class LogRotation
{
public:
    LogRotation();
    ~LogRotation();
    Q_DISABLE_COPY_MOVE(LogRotation)

private:
    void wait();

    sigset_t hangUp = {};
    std::atomic<bool> stopped = false;
    std::thread thread; // the last member: it uses the others
};

} // namespace till
