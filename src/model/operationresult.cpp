#include "model/operationresult.h"

namespace lmmindbox {

OperationResult::~OperationResult() = default;

bool OperationResult::success() const
{
    return status == OperationStatus::Success;
}

tr::Tr OperationResult::getError(const tr::Tr &defaultText) const
{
    return error.isEmpty() ? defaultText : error;
}

} // namespace lmmindbox
