#pragma once

#include <host/clock.h>

#include <chrono>

namespace till {

class Store;

/// Removes receipts begun more than "Till:keepDays" days ago, a few at a time so that no sale
/// waits. Keeps every receipt that is open, waits for delivery or was refused.
class Retention
{
public:
    static constexpr int atOnce = 50;
    static constexpr std::chrono::seconds pause{60};

    /// The store must outlive this object.
    explicit Retention(Store &store);

    /// Removes a few receipts once every `pause`. Call it whenever the thread is idle.
    void step();

private:
    Store &store;
    int days;
    Clock::Time next;
};

} // namespace till
