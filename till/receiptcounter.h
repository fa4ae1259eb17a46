#pragma once

#include <QString>

#include <optional>

namespace till {

/// Shift and receipt number of a till, kept in a file.
///
/// Receipt numbers run on through the shifts and are never given out twice: the next one is on the
/// disk before it is used.
class ReceiptCounter
{
public:
    explicit ReceiptCounter(QString file);

    /// Reads the file. \return Why it cannot be used; nothing when it was read or is missing.
    [[nodiscard]] std::optional<QString> load();
    /// Makes sure that the shift is at least this one and the next number above this one.
    void continueFrom(int lastShift, int lastNumber);

    int getShift() const { return shift; }
    /// The next receipt's number. When it could not be written, `error` says why; the number is
    /// good all the same, but may be given out again after a restart.
    int next(QString &error);
    /// Begins the next shift.
    [[nodiscard]] std::optional<QString> closeShift();

private:
    std::optional<QString> save() const;

    QString file;
    int shift = 1;
    int number = 0; ///< The last one given out.
};

} // namespace till
