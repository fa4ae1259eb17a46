#include "model/createorderresult.h"

#include "model/jsonpath.h"

namespace lmmindbox {

CreateOrderResult::CreateOrderResult(const OperationResult &result)
    : OperationResult(result)
    , processingStatus(
          getProcessingStatus(getJsonValueByPath(response, {QStringLiteral("order"),
                                                            QStringLiteral("processingStatus")})
                                  .toString()))
{}

bool CreateOrderResult::success() const
{
    return processingStatus == ProcessingStatus::Processed ||
           processingStatus == ProcessingStatus::Calculated;
}

} // namespace lmmindbox
