#include "model/registercustomerresult.h"

namespace lmmindbox {

RegisterCustomerResult::RegisterCustomerResult(const OperationResult &result)
    : OperationResult(result)
{}

bool RegisterCustomerResult::success() const
{
    return getProcessingStatus(response, QStringLiteral("customer")) == ProcessingStatus::Created;
}

} // namespace lmmindbox
