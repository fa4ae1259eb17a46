#pragma once

#include <QDateTime>
#include <QList>
#include <QString>

#include <array>
#include <chrono>
#include <mutex>

namespace till {

/// Counts the exchanges with the service, for monitors: kept in a small file beside the store that
/// all processes of a till share and that outlives them.
///
/// The file has its full size from the beginning, so that a full disk does not stop the counting,
/// and is not synced: a kill loses nothing, a power cut perhaps a minute. Nothing depends on it; a
/// file that cannot be used, or that is damaged, is begun anew or done without.
class ExchangeCounts
{
public:
    /// Upper bounds of the durations that are told apart, in milliseconds.
    static constexpr std::array<int, 9> bounds{25, 50, 100, 250, 500, 1'000, 2'500, 5'000, 10'000};

    /// The exchanges of one operation that ended in one way.
    struct Series
    {
        QString operation;
        QString outcome; ///< "success", "refused", "no_answer" or "not_sent".
        qint64 count = 0;
        std::chrono::microseconds duration{0};      ///< Of all together.
        qint64 last = 0;                            ///< Seconds since 1970.
        std::array<qint64, bounds.size()> within{}; ///< How many took at most so long.
    };
    struct Snapshot
    {
        QList<Series> series;
        qint64 unstored = 0; ///< As the last till that sold has set it.
    };

    /// Counts every exchange of the process from now on; one object a process.
    explicit ExchangeCounts(const QString &directory);
    ~ExchangeCounts();
    Q_DISABLE_COPY_MOVE(ExchangeCounts)

    /// Says how many receipts are only in memory.
    void setUnstored(qint64 count);

    /// What has been counted there; empty when nothing was.
    static Snapshot read(const QString &directory);

private:
    struct File;

    template<typename Change>
    void change(Change change);

    std::mutex mutex;
    int descriptor = -1;
};

} // namespace till
