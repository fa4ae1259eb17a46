#include "model/smsconfirmationresult.h"

namespace lmmindbox {

SmsConfirmationResult::SmsConfirmationResult(const OperationResult &result)
    : OperationResult(result)
    , processingStatus(getProcessingStatus(response, QStringLiteral("smsConfirmation")))
    , authenticationCode(response.value(QLatin1String("authenticationCode")).toString())
{}

} // namespace lmmindbox
