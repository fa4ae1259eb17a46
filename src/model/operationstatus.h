#pragma once

#include <QString>

namespace lmmindbox {

/// The status of an operation as a whole.
enum class OperationStatus {
    Undefined = 0,
    Error = 1, ///< No connection, or an answer that carries an error message.
    Success = 2,
    ValidationError = 3,
    ProtocolError = 4,
};

/// The status named `text` in an answer, compared exactly; `Undefined` for any other text. `Error`
/// has no text of its own.
OperationStatus getOperationStatus(const QString &text);

} // namespace lmmindbox
