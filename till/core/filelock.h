#pragma once

#include <QString>

namespace till {

/// A lock on a file or a directory that holds between processes as long as this object lives.
///
/// The kernel frees it when the process ends, however it ends. A file that is missing is created
/// and stays behind, empty. Not for a database's own file, whose locks closing it would drop.
class FileLock
{
public:
    enum class State {
        Held,
        Busy,        ///< Another object or process holds it.
        Unavailable, ///< It cannot be opened; see `lastError`.
    };

    explicit FileLock(QString path);
    ~FileLock();
    Q_DISABLE_COPY_MOVE(FileLock)

    /// Takes the lock unless another one has it; never waits.
    [[nodiscard]] State acquire();
    void release();

    /// Whether somebody holds the lock of that file; makes no file.
    static bool isHeld(const QString &path);

    const QString &lastError() const { return error; }

private:
    QString path;
    QString error;
    int descriptor = -1;
};

} // namespace till
