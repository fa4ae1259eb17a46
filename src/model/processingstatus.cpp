#include "model/processingstatus.h"

#include "model/jsonpath.h"

#include <QJsonObject>

#include <algorithm>
#include <array>

namespace lmmindbox {

ProcessingStatus getProcessingStatus(const QString &text)
{
    struct Name
    {
        QLatin1String text;
        ProcessingStatus status;
    };
    using enum ProcessingStatus;
    static constexpr std::array names = {
        Name{QLatin1String("NotFound"), NotFound},
        Name{QLatin1String("Found"), Found},
        Name{QLatin1String("Changed"), Changed},
        Name{QLatin1String("Created"), Created},
        Name{QLatin1String("MobilePhoneConfirmed"), MobilePhoneConfirmed},
        Name{QLatin1String("AlreadyConfirmed"), AlreadyConfirmed},
        Name{QLatin1String("Processed"), Processed},
        Name{QLatin1String("NotProcessed"), NotProcessed},
        Name{QLatin1String("Calculated"), Calculated},
        Name{QLatin1String("IncorrectConfirmationCode"), IncorrectConfirmationCode},
    };
    const auto found =
        std::ranges::find_if(names, [&](const Name &name) { return name.text == text; });
    return found == names.end() ? Unknown : found->status;
}

ProcessingStatus getProcessingStatus(const QJsonObject &answer, const QString &entity)
{
    return getProcessingStatus(
        getJsonValueByPath(answer, {entity, QStringLiteral("processingStatus")}).toString());
}

} // namespace lmmindbox
