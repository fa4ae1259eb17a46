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

GetCustomerResult::GetCustomerResult(const OperationResult &result)
    : OperationResult(result)
{}

bool GetCustomerResult::success() const
{
    return OperationResult::success() &&
           customer.checkStatus({ProcessingStatus::Found, ProcessingStatus::NotFound});
}

RegisterCustomerResult::RegisterCustomerResult(const OperationResult &result)
    : OperationResult(result)
{}

bool RegisterCustomerResult::success() const
{
    return getProcessingStatus(response, QStringLiteral("customer")) == ProcessingStatus::Created;
}

SmsConfirmationResult::SmsConfirmationResult(const OperationResult &result)
    : OperationResult(result)
    , processingStatus(getProcessingStatus(response, QStringLiteral("smsConfirmation")))
    , authenticationCode(response.value(QLatin1String("authenticationCode")).toString())
{}

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
