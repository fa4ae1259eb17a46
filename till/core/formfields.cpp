#include "till/core/formfields.h"

#include <algorithm>

namespace till {

QList<FormField> fieldsInOrder(QList<FormField> fields)
{
    const auto isNumbered = [](const FormField &field) { return field.order >= 0; };
    if (std::all_of(fields.cbegin(), fields.cend(), isNumbered))
        std::stable_sort(
            fields.begin(), fields.end(),
            [](const FormField &left, const FormField &right) { return left.order < right.order; });
    return fields;
}

} // namespace till
