#pragma once

#include "model/operationresult.h"
#include "model/processingstatus.h"

namespace lmmindbox {

/// Answer to the creation of an order.
class CreateOrderResult : public OperationResult
{
public:
    CreateOrderResult() = default;
    CreateOrderResult(const OperationResult &result);

    /// Whether the order is Processed or Calculated, whatever the operation's status.
    [[nodiscard]] bool success() const override;

    ProcessingStatus processingStatus = ProcessingStatus::Unknown; ///< Of the order.
};

} // namespace lmmindbox
