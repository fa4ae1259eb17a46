#pragma once

#include <QString>

class QJsonObject;

namespace lmmindbox {

/// What the service did with one entity (customer, order, code) of an operation.
enum class ProcessingStatus {
    Unknown = 0,
    NotFound = 1,
    Found = 2,
    Changed = 3,
    Created = 5,
    MobilePhoneConfirmed = 6,
    AlreadyConfirmed = 7,
    Processed = 8,
    NotProcessed = 9,
    Calculated = 10,
    IncorrectConfirmationCode = 11,
};

/// The status spelled `text` in an answer, compared exactly; `Unknown` for any other text.
ProcessingStatus getProcessingStatus(const QString &text);
/// The status that `answer` gives to one of its entities, such as "order"; `Unknown` without one.
ProcessingStatus getProcessingStatus(const QJsonObject &answer, const QString &entity);

} // namespace lmmindbox
