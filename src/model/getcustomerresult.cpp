#include "model/getcustomerresult.h"

namespace lmmindbox {

GetCustomerResult::GetCustomerResult(const OperationResult &result)
    : OperationResult(result)
{}

bool GetCustomerResult::success() const
{
    return OperationResult::success() &&
           customer.checkStatus({ProcessingStatus::Found, ProcessingStatus::NotFound});
}

} // namespace lmmindbox
