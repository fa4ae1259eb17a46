#include "model/smsconfirmationresult.h"

#include "model/jsonpath.h"

namespace lmmindbox {

SmsConfirmationResult::SmsConfirmationResult(const OperationResult &result)
    : OperationResult(result)
    , processingStatus(
          getProcessingStatus(getJsonValueByPath(response, {QStringLiteral("smsConfirmation"),
                                                            QStringLiteral("processingStatus")})
                                  .toString()))
    , authenticationCode(response.value(QLatin1String("authenticationCode")).toString())
{}

} // namespace lmmindbox
