#include "model/createorderresult.h"

namespace lmmindbox {

CreateOrderResult::CreateOrderResult(const OperationResult &result)
    : OperationResult(result)
    , processingStatus(getProcessingStatus(response, QStringLiteral("order")))
{}

bool CreateOrderResult::success() const
{
    return processingStatus == ProcessingStatus::Processed ||
           processingStatus == ProcessingStatus::Calculated;
}

} // namespace lmmindbox
