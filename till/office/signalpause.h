#pragma once

#include "till/core/deliveryloop.h"

#include <csignal>

namespace till {

/// The pause of a program that delivers and nothing else: stopped by SIGINT and SIGTERM.
///
/// The signals are blocked as long as it lives and taken one by one, so that none is missed and
/// none interrupts an exchange with the service.
class SignalPause : public DeliveryPause
{
public:
    /// To be made before any other thread.
    SignalPause();
    ~SignalPause() override;
    Q_DISABLE_COPY_MOVE(SignalPause)

    bool isStopped() override;
    void rest(std::chrono::milliseconds time, bool wakeable) override;

private:
    sigset_t signalSet = {};
    sigset_t before = {};
    bool stopped = false;
};

} // namespace till
