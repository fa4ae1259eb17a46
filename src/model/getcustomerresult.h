#pragma once

#include "model/operationresult.h"

namespace lmmindbox {

/// Answer to the look-up of a customer. That the service does not know the customer is a success
/// as well; `customer.found()` tells the two apart.
class GetCustomerResult : public OperationResult
{
public:
    GetCustomerResult() = default;
    GetCustomerResult(const OperationResult &result);

    [[nodiscard]] bool success() const override;
};

} // namespace lmmindbox
