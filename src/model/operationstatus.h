#pragma once

#include <QString>

namespace lmmindbox {

/// How the service took an operation as a whole.
enum class OperationStatus {
    Undefined = 0,
    Error = 1, ///< No connection, or an answer that carries an error message.
    Success = 2,
    ValidationError = 3,
    ProtocolError = 4,
};

/// The status spelled `text` in an answer, compared exactly; `Undefined` for any other text.
/// `Error` is never spelled out.
OperationStatus getOperationStatus(const QString &text);

} // namespace lmmindbox
