#pragma once

#include <QString>

namespace till {

/// Receipt numbers that may have been given, by a mark beside the store.
///
/// A store that was damaged or deleted cannot tell which numbers it gave, and a number given twice
/// would make two sales one order. So numbers are reserved in blocks in a small file of their own,
/// before the first one of a block is given; without the store the till goes on behind the block.
class ReservedNumbers
{
public:
    static constexpr int blockSize = 1'000;

    explicit ReservedNumbers(QString file);

    /// The highest number that may have been given; 0 when none was.
    int highest();
    /// Makes sure that this number is reserved. A failure is logged: the number is given all the
    /// same.
    void reserve(int number);

private:
    QString file;
    int upTo = -1; ///< -1 before the file was read.
};

} // namespace till
