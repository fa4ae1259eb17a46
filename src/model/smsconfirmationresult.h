#pragma once

#include "model/operationresult.h"
#include "model/processingstatus.h"

#include <QString>

namespace lmmindbox {

/// Answer to the check of a code sent by SMS.
class SmsConfirmationResult : public OperationResult
{
public:
    SmsConfirmationResult() = default;
    SmsConfirmationResult(const OperationResult &result);

    ProcessingStatus processingStatus = ProcessingStatus::Unknown; ///< Of the code.
    QString authenticationCode; ///< Empty when missing or no text.
};

} // namespace lmmindbox
