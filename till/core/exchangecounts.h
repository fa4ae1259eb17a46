#pragma once

#include <QByteArrayView>
#include <QString>

#include <array>
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

    /// What the file begins with.
    static constexpr std::array<char, 8> usualMark{'e', 'x', 'c', 'h', 'n', 'g', 's', '1'};

    /// The exchanges of one operation that ended in one way.
    struct Series
    {
        std::array<char, 64> operation{}; ///< UTF-8; empty in a free place.
        std::array<char, 16> outcome{};   ///< "success", "refused", "no_answer" or "not_sent".
        qint64 count = 0;
        qint64 microseconds = 0;                    ///< Of all together.
        qint64 last = 0;                            ///< Seconds since 1970.
        std::array<qint64, bounds.size()> within{}; ///< How many took at most so long.
    };
    /// All of the file, byte by byte.
    struct File
    {
        std::array<char, 8> mark = usualMark;
        qint64 unstored = 0; ///< As the last till that sold has set it.
        std::array<Series, 64> series;
    };

    /// Counts every exchange of the process from now on; one object a process.
    explicit ExchangeCounts(const QString &directory);
    ~ExchangeCounts();
    Q_DISABLE_COPY_MOVE(ExchangeCounts)

    /// Says how many receipts are only in memory.
    void setUnstored(qint64 count);

    /// What has been counted there; empty when nothing was.
    static File read(const QString &directory);
    /// An operation or an outcome of the file.
    static QString textOf(QByteArrayView field);

private:
    template<typename Change>
    void change(Change change);

    std::mutex mutex;
    int descriptor = -1;
};

} // namespace till
