#pragma once

#include <QString>

#include <optional>

namespace till {

/// Shift and receipt number of a till, kept in a file.
///
/// Receipt numbers run on through the shifts and are never given out twice, provided that `save`
/// succeeds before a number is used.
class ReceiptCounter
{
public:
    explicit ReceiptCounter(QString file);

    /// Reads the file. \return Why it cannot be used; nothing when it was read or is missing.
    [[nodiscard]] std::optional<QString> load();
    /// Makes sure that the shift is at least this one and the next number above this one.
    void continueFrom(int lastShift, int lastNumber);

    int getShift() const { return shift; }
    /// The next receipt's number.
    int next();
    /// Begins the next shift.
    void closeShift();
    /// Writes what has changed. \return Why it is not on the disk; then the last numbers may be
    /// given out again after a restart.
    [[nodiscard]] std::optional<QString> save();

private:
    QString file;
    int shift = 1;
    int number = 0; ///< The last one given out.
    bool isSaved = true;
};

} // namespace till
