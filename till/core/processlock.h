#pragma once

#include <QLockFile>
#include <QString>

#include <optional>
#include <tl/expected.hpp>

namespace till {

/// A lock between processes: a small file that names its holder. The lock is free when the holder
/// ends, even by a kill.
class ProcessLock
{
public:
    explicit ProcessLock(const QString &file);

    /// Takes the lock, or succeeds when this object has it already. Waits about a second at most,
    /// and only for a file that names no holder. The error names the file, and the process that
    /// holds it if there is one.
    [[nodiscard]] tl::expected<void, QString> acquire();

    /// The process that holds the lock; nothing when it is free.
    std::optional<qint64> holder() const { return holderOf(lock.fileName()); }
    static std::optional<qint64> holderOf(const QString &file);

private:
    bool tryLeft();

    QLockFile lock;
};

} // namespace till
