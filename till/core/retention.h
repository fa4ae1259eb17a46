#pragma once

#include <QDeadlineTimer>
#include <QString>

#include <chrono>

namespace till {

/// Removes old receipts from the store, a few at a time so that no sale waits for it: those begun
/// more than "Till:keepDays" days ago, but never one that is open, waits for its delivery or was
/// refused.
class Retention
{
public:
    static constexpr int usualDays = 90;
    static constexpr int atOnce = 50;
    static constexpr std::chrono::seconds pause{60};

    explicit Retention(QString dataDirectory);

    /// Removes some when it is time to; to be called when nothing else is to be done.
    void step();

private:
    QString dataDirectory;
    int days;
    QDeadlineTimer next{0};
};

} // namespace till
