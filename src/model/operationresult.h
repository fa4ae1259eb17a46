#pragma once

#include "model/customer.h"
#include "model/operationstatus.h"

#include <host/tr.h>

#include <QJsonObject>

namespace lmmindbox {

/// One answer of the service.
class OperationResult
{
public:
    OperationResult() = default;
    OperationResult(const OperationResult &) = default;
    OperationResult(OperationResult &&) = default;
    OperationResult &operator=(const OperationResult &) = default;
    OperationResult &operator=(OperationResult &&) = default;
    virtual ~OperationResult();

    /// Whether the operation did what it was sent for.
    [[nodiscard]] virtual bool success() const;
    /// The answer's own error text, else `defaultText`.
    virtual tr::Tr getError(const tr::Tr &defaultText) const;

    int httpCode = 0;
    int transportCode = 0; ///< The HTTP client's own code, kept for the log.
    /// No answer came, or one without content whose HTTP code is not 200: the operation may be sent
    /// again later.
    bool noConnection = false;
    OperationStatus status = OperationStatus::Undefined;
    tr::Tr error; ///< Set only when there was no connection.
    QJsonObject response;
    Customer customer; ///< Parsed from the answer, whatever the operation.
};

} // namespace lmmindbox
