#pragma once

#include <host/dialogrequests.h>

namespace till {

/// The fields of a form in the order they are shown: that of their numbers, when all have one.
QList<FormField> fieldsInOrder(QList<FormField> fields);

} // namespace till
