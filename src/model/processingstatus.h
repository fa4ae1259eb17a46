#pragma once

#include <QString>

class QJsonObject;

namespace lmmindbox {

/// The status of one entity (customer, order, code) in an operation's answer.
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

/// The status named `text` in an answer, compared exactly; `Unknown` for any other text.
ProcessingStatus getProcessingStatus(const QString &text);
/// The status of one of the answer's entities, such as "order"; `Unknown` without one.
ProcessingStatus getProcessingStatus(const QJsonObject &answer, const QString &entity);

} // namespace lmmindbox
