#pragma once

#include "model/operationresult.h"

namespace lmmindbox {

/// Answer to the registration of a customer.
class RegisterCustomerResult : public OperationResult
{
public:
    RegisterCustomerResult() = default;
    RegisterCustomerResult(const OperationResult &result);

    /// Whether the answer says that the customer was created, whatever the operation's status.
    [[nodiscard]] bool success() const override;
};

} // namespace lmmindbox
