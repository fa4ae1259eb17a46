#include "model/registercustomerresult.h"

#include "model/jsonpath.h"

namespace lmmindbox {

RegisterCustomerResult::RegisterCustomerResult(const OperationResult &result)
    : OperationResult(result)
{}

bool RegisterCustomerResult::success() const
{
    const auto text = getJsonValueByPath(response, {QStringLiteral("customer"),
                                                    QStringLiteral("processingStatus")})
                          .toString();
    return getProcessingStatus(text) == ProcessingStatus::Created;
}

} // namespace lmmindbox
