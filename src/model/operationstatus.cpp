#include "model/operationstatus.h"

namespace lmmindbox {

OperationStatus getOperationStatus(const QString &text)
{
    if (text == QLatin1String("Success"))
        return OperationStatus::Success;
    if (text == QLatin1String("ValidationError"))
        return OperationStatus::ValidationError;
    if (text == QLatin1String("ProtocolError"))
        return OperationStatus::ProtocolError;
    return OperationStatus::Undefined;
}

} // namespace lmmindbox
