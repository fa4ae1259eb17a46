#pragma once

#include <QString>

class QJsonObject;

namespace till {

/// An answer of the service as it is kept with what it was the answer to: compact JSON, long
/// enough to see why something was refused, and without the secret key. Empty for no answer.
QString answerText(const QJsonObject &answer);

} // namespace till
